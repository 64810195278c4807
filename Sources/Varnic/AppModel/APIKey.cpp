#include "Varnic/AppModel/APIKey.h"

#include "Varnic/AppModel/AppSettings.h"
#include "Varnic/Background.h"
#include "VarnicCore/AISummariser/KeyText.h"

#include <QPointer>
#include <QTimer>

#include <utility>

namespace varnic {

namespace {

/// How long a request waits for a key that it may do without. A key ring that works answers in a fraction of it.
constexpr std::chrono::milliseconds patienceWithoutNeed = std::chrono::seconds(1);

} // namespace

APIKey::APIKey(AppSettings& settings, const std::shared_ptr<KeyStore>& keys)
    : settings_(settings), keys_(keys), shown_(account()) {
    providerWatcher_ = settings.ai.addNotifier([this] {
        if (account() == shown_) {
            return;
        }
        const bool isWatched = status.value().state.has_value() || busy_ > 0;
        shown_ = account();
        status = Status{.state = std::nullopt, .problem = "", .isBusy = busy_ > 0};
        if (isWatched) {
            read();
        }
    });
}

APIKey::~APIKey() {
    abandon();
}

std::string APIKey::account() const {
    return settings_.ai.value().keyAccount();
}

void APIKey::setBusy(int change) {
    busy_ += change;
    Status now = status.value();
    now.isBusy = busy_ > 0;
    status = now;
}

void APIKey::show(const std::string& account, const KeyReading& reading) {
    if (account == shown_) {
        status = Status{.state = reading.state, .problem = reading.problem, .isBusy = busy_ > 0};
    }
}

QCoro::Task<KeyReading> APIKey::read(std::optional<std::chrono::milliseconds> patience) {
    const QPointer self(this);
    std::stop_source givenUp;
    const std::stop_callback abandoned(stop_.get_token(), [givenUp]() mutable { givenUp.request_stop(); });
    if (patience) {
        QTimer::singleShot(*patience, this, [givenUp]() mutable { givenUp.request_stop(); });
    }
    const auto look = [keys = keys_, account = account(), stop = givenUp.get_token()] {
        return keys->read(account, stop);
    };
    const std::string asked = account();
    setBusy(+1);
    KeyReading reading = co_await inBackground(look);
    if (self) {
        setBusy(-1);
        show(asked, reading);
    }
    co_return reading;
}

QCoro::Task<KeyReading> APIKey::readForRequest() {
    return settings_.ai.value().needsKey() ? read() : read(patienceWithoutNeed);
}

QCoro::Task<std::optional<std::string>> APIKey::save(std::string pasted) {
    std::string key;
    try {
        key = KeyText::checked(pasted);
    } catch (const KeyText::Error& error) {
        co_return error.what();
    }
    auto saving = change([key](KeyStore& keys, const std::string& account,
                               const std::stop_token& stop) { keys.setKey(key, account, stop); },
                         KeyReading::found(""));
    co_return co_await saving;
}

QCoro::Task<std::optional<std::string>> APIKey::remove() {
    return change(
        [](KeyStore& keys, const std::string& account, const std::stop_token& stop) { keys.remove(account, stop); },
        {});
}

/// Gives why the change failed, and then shows what there is.
QCoro::Task<std::optional<std::string>> APIKey::change(Change apply, KeyReading afterwards) {
    const QPointer self(this);
    const auto work = [apply = std::move(apply), keys = keys_, account = account(),
                       stop = stop_.get_token()]() -> std::optional<std::string> {
        try {
            apply(*keys, account, stop);
            return std::nullopt;
        } catch (const std::exception& error) {
            return error.what();
        }
    };
    const std::string asked = account();
    setBusy(+1);
    const std::optional<std::string> problem = co_await inBackground(work);
    if (!self) {
        co_return problem;
    }
    setBusy(-1);
    if (problem) {
        co_await read();
    } else {
        show(asked, afterwards);
    }
    co_return problem;
}

} // namespace varnic

#include "Varnic/AppModel/APIKey.h"

#include "Varnic/AppModel/AppSettings.h"
#include "Varnic/Background.h"
#include "VarnicCore/AISummariser/KeyText.h"

#include <QPointer>

namespace varnic {

namespace {

/// Why a change of the key failed; nothing where it didn't.
using Problem = std::optional<std::string>;

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

QCoro::Task<KeyReading> APIKey::read() {
    const QPointer self(this);
    const auto look = [keys = keys_, account = account(), stop = stop_.get_token()] {
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

QCoro::Task<std::optional<std::string>> APIKey::save(std::string pasted) {
    std::string key;
    try {
        key = KeyText::checked(pasted);
    } catch (const KeyText::Error& error) {
        co_return error.what();
    }
    const QPointer self(this);
    const auto store = [keys = keys_, key, account = account(), stop = stop_.get_token()]() -> Problem {
        try {
            keys->setKey(key, account, stop);
            return std::nullopt;
        } catch (const std::exception& error) {
            return error.what();
        }
    };
    const std::string asked = account();
    setBusy(+1);
    const Problem problem = co_await inBackground(store);
    if (!self) {
        co_return problem;
    }
    setBusy(-1);
    if (problem) {
        co_await read();
    } else {
        show(asked, KeyReading::found(""));
    }
    co_return problem;
}

QCoro::Task<std::optional<std::string>> APIKey::remove() {
    const QPointer self(this);
    const auto clear = [keys = keys_, account = account(), stop = stop_.get_token()]() -> Problem {
        try {
            keys->remove(account, stop);
            return std::nullopt;
        } catch (const std::exception& error) {
            return error.what();
        }
    };
    const std::string asked = account();
    setBusy(+1);
    const Problem problem = co_await inBackground(clear);
    if (!self) {
        co_return problem;
    }
    setBusy(-1);
    if (problem) {
        co_await read();
    } else {
        show(asked, {});
    }
    co_return problem;
}

} // namespace varnic

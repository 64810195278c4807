#include "Varnic/AppModel/AppModel.h"

#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/AppModel/LibraryWatch.h"
#include "Varnic/Background.h"
#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/AISummariser/AISummariser.h"
#include "VarnicCore/AISummariser/KeyStore.h"
#include "VarnicCore/AISummariser/SummariserFactory.h"
#include "VarnicCore/AISummariser/URLSessionTransport.h"
#include "VarnicPlatform/Capture/LiveCapture.h"
#include "VarnicPlatform/KeyStore/KeychainStore.h"
#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechTranscriber.h"

#include <QTimer>

#include <glib.h>

#include <chrono>
#include <string_view>

namespace varnic {

namespace {

/// What one request to an AI may take.
constexpr auto requestTimeout = std::chrono::seconds(120);

/// The user's full name as the account has it; GLib says "Unknown" where there is none.
std::string_view accountName() {
    const std::string_view name = g_get_real_name();
    return name == "Unknown" ? std::string_view() : name;
}

std::shared_ptr<KeyStore> keyStore(bool isScratch) {
    if (isScratch) {
        return std::make_shared<MemoryKeyStore>();
    }
    return std::make_shared<KeychainStore>("app.brevin.varnic.ai");
}

} // namespace

AppModel::AppModel(AppPlaces places, QObject* parent)
    : QObject(parent), settings(std::move(places.settings), accountName(), Region::user().locale),
      keys(keyStore(places.isScratch)), transport(std::make_shared<URLSessionTransport>(requestTimeout)),
      makeTranscriber([this] {
          return std::make_shared<SpeechTranscriber>(settings.localeID.value(), SpeechModels::dataDirectories());
      }),
      makeCapture([] { return std::make_shared<LiveCapture>(); }),
      store_(std::move(places.dataDirectory), std::move(places.spareFolder)),
      recorder_(std::make_unique<RecordingController>()) {
    // Ahead of the views.
    connect(this, &AppModel::notesChanged, this, [this](const ChangedNotes& changed) { rollUps_.take(changed); });
    connect(recorder_.get(), &RecordingController::mustStop, this, [this] {
        flash({.text = "Recording stopped — the disk is full", .symbol = warningSymbol});
        stopRecording();
    });
    settingWatchers_.push_back(settings.showPill.addNotifier([this] { desktop.refreshPill(); }));
    const auto registerAnew = [this] {
        if (!isDemo) {
            desktop.applyHotkey();
        }
    };
    settingWatchers_.push_back(settings.hotkeyEnabled.addNotifier(registerAnew));
    settingWatchers_.push_back(settings.hotkey.addNotifier(registerAnew));
}

AppModel::~AppModel() {
    stopProcessing_.request_stop();
    flushSaves();
    Background::waitForDone();
}

bool AppModel::hasKey() const {
    return !keys->key(settings.ai.value().keyAccount()).value_or("").empty();
}

void AppModel::setKey(const std::string& value) {
    const std::string key = QString::fromStdString(value).trimmed().toStdString();
    const std::string account = settings.ai.value().keyAccount();
    try {
        if (key.empty()) {
            keys->remove(account);
        } else {
            keys->setKey(key, account);
        }
        Q_EMIT keyChanged();
    } catch (const std::exception&) {
        flash({.text =
                   key.empty() ? "Couldn’t remove the key from the Keychain" : "Couldn’t save the key to the Keychain",
               .symbol = warningSymbol});
    }
}

std::unique_ptr<AISummariser> AppModel::aiSummariser() const {
    return SummariserFactory::ai(settings.ai.value(), *keys, transport, anthropicURL);
}

} // namespace varnic

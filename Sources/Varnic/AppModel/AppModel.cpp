#include "Varnic/AppModel/AppModel.h"

#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/AppModel/LibraryWatch.h"
#include "Varnic/Background.h"
#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/AISummariser/AISummariser.h"
#include "VarnicCore/AISummariser/SummariserFactory.h"
#include "VarnicCore/AISummariser/URLSessionTransport.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicPlatform/Capture/LiveCapture.h"
#include "VarnicPlatform/KeyStore/KeychainStore.h"
#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechTranscriber.h"

#include <QPointer>
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
    return std::make_shared<KeychainStore>();
}

} // namespace

AppModel::AppModel(AppPlaces places, QObject* parent)
    : QObject(parent), settings(std::move(places.settings), accountName(), Region::user().locale),
      keys(keyStore(places.isScratch)), transport(std::make_shared<URLSessionTransport>(requestTimeout)),
      makeTranscriber([this] {
          return std::make_shared<SpeechTranscriber>(
              settings.language(), ModelChoice::from(settings.speechModel.value()), SpeechModels::dataDirectories());
      }),
      makeCapture([this] {
          auto capture = std::make_shared<LiveCapture>(settings.devices());
          liveCapture_ = capture;
          return capture;
      }),
      store_(std::move(places.dataDirectory), std::move(places.spareFolder)),
      recorder_(std::make_unique<RecordingController>()), isPlaceFixed_(places.isFixed) {
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
    settingWatchers_.push_back(settings.hotkeyKeys.addNotifier(registerAnew));
    const auto recordFromThese = [this] {
        if (const auto capture = liveCapture_.lock()) {
            capture->choose(settings.devices());
        }
    };
    settingWatchers_.push_back(settings.microphone.addNotifier(recordFromThese));
    settingWatchers_.push_back(settings.heardOutput.addNotifier(recordFromThese));
}

AppModel::~AppModel() {
    stopProcessing_.request_stop();
    apiKey.abandon();
    cancelLibraryMove();
    flushSaves();
    Background::waitForDone();
}

QCoro::Task<> AppModel::setKey(std::string value) {
    const bool isRemoval = Unicode::trim(value).empty();
    const QPointer self(this);
    // Not in one expression: g++ 12 destroys the task of a conditional in a co_await twice.
    auto changing = isRemoval ? apiKey.remove() : apiKey.save(std::move(value));
    const auto problem = co_await changing;
    if (self && problem) {
        flash(
            {.text = isRemoval ? "Couldn’t remove the key from the Keychain" : "Couldn’t save the key to the Keychain",
             .symbol = warningSymbol});
    }
}

std::unique_ptr<AISummariser> AppModel::aiSummariser(const KeyReading& key) const {
    return SummariserFactory::ai(settings.ai.value(), key.key, transport, anthropicURL);
}

} // namespace varnic

#include "Varnic/AppModel/AppModel.h"

#include "Varnic/Background.h"
#include "VarnicCore/AISummariser/SummariserFactory.h"
#include "VarnicCore/AISummariser/URLSessionTransport.h"
#include "VarnicCore/Library/NoteFileReader.h"
#include "VarnicPlatform/Capture/LiveCapture.h"
#include "VarnicPlatform/KeyStore/KeychainStore.h"
#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechTranscriber.h"

#include <fmt/format.h>
#include <glib.h>

#include <chrono>
#include <cstdlib>
#include <string_view>

namespace varnic {

namespace {

namespace fs = std::filesystem;

/// What one request to an AI may take.
constexpr auto requestTimeout = std::chrono::seconds(120);

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

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

/// For each library a folder of its own, where the desktop keeps what programs have to remember.
fs::path spareFolderFor(const fs::path& library) {
    std::error_code ignored;
    return fs::path(g_get_user_state_dir()) / "Varnic" / "Unsaved" /
           fmt::format("{:016x}", fingerprintOf(fs::absolute(library, ignored).native()));
}

} // namespace

std::pair<fs::path, bool> AppPlaces::dataDirectoryFromEnvironment() {
    if (const std::string_view folder = environment("VARNIC_DATA_DIR"); !folder.empty()) {
        return {folder, true};
    }
    return {fs::path(g_get_user_data_dir()) / "Varnic" / "Library", false};
}

AppPlaces AppPlaces::fromEnvironment() {
    auto [folder, isScratch] = dataDirectoryFromEnvironment();
    auto settings = std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                                isScratch ? "app.brevin.varnic.selftest" : "Varnic", "settings");
    if (isScratch && environment("VARNIC_SELFTEST") != "persist") {
        settings->clear();
    }
    fs::path spares = spareFolderFor(folder);
    return {.dataDirectory = std::move(folder),
            .spareFolder = std::move(spares),
            .isScratch = isScratch,
            .settings = std::move(settings)};
}

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

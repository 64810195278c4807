#pragma once

#include "VarnicCore/AISummariser/AISettings.h"
#include "VarnicCore/Pipeline/Consent.h"
#include "VarnicPlatform/Capture/CaptureDevices.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <QProperty>
#include <QSettings>
#include <QTimer>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

class StoredSettings;

/// The key combinations that can be chosen for the global hotkey.
enum class HotkeyChoice { ctrlOptCmdR, optShiftR, ctrlShiftR };

inline constexpr std::array allHotkeyChoices{HotkeyChoice::ctrlOptCmdR, HotkeyChoice::optShiftR,
                                             HotkeyChoice::ctrlShiftR};

/// The form in which a choice is stored.
std::string_view rawValue(HotkeyChoice choice);
std::optional<HotkeyChoice> hotkeyChoiceFrom(std::string_view rawValue);

/// The user's settings. Each is read once, when this is made; a later change is in the store at once, and on the disk a
/// moment after the last one. Main thread.
class AppSettings {
public:
    /// `userName` is the user's full name and `locale` the current locale's identifier, the first values of `yourName`
    /// and `localeID`.
    AppSettings(std::unique_ptr<QSettings> store, std::string_view userName, std::string_view locale);

    /// The user's name in digests and messages; may be empty.
    QProperty<std::string> yourName;
    /// The reminder to tell the other party has been accepted once.
    QProperty<bool> consentSeen;
    QProperty<bool> remindEveryTime;
    QProperty<Consent::Tone> headsUpTone;
    QProperty<bool> showPill;
    QProperty<bool> hotkeyEnabled;
    QProperty<HotkeyChoice> hotkey;
    /// A combination of the user's own in place of the choice, as KeyCombination::parse reads it; empty for the choice.
    QProperty<std::string> hotkeyKeys;
    /// Whether recordings stay after they have been transcribed.
    QProperty<bool> keepAudio;
    QProperty<bool> liveTranscript;
    /// The spoken language, such as "en-GB", or LanguageChoice::automatic.
    QProperty<std::string> localeID;
    /// Which speech model writes finished calls down, as ModelChoice has it.
    QProperty<std::string> speechModel;
    QProperty<AISettings> ai;
    /// The sound devices that calls are recorded from; see CaptureDevices.
    QProperty<DeviceChoice> microphone;
    QProperty<DeviceChoice> heardOutput;
    /// What the desktop said last of the start at login, where it can't be looked at; see LoginStart.
    QProperty<bool> startsAtLogin;
    /// Where the library lies, if it was moved; empty for the usual place. Only a move of the library sets it.
    QProperty<std::string> libraryFolder;
    /// The settings that said where the library lies can't be read, so the one in the usual place may be another. Stays
    /// true over restarts until `libraryFolder` is set or the user doesn't mind.
    QProperty<bool> isLibraryLost;

    /// What is spoken, by `localeID`.
    [[nodiscard]] LanguageChoice language() const;

    /// The devices of both sides.
    [[nodiscard]] CaptureDevices devices() const {
        return {.microphone = microphone.value(), .heard = heardOutput.value()};
    }

    /// The user's sentence about settings that could not be read, or can't be saved; nothing where all is well.
    QProperty<std::optional<std::string>> problem;

    /// Writes what is not written yet; whether all is on the disk. `problem` says why not.
    bool save();

    /// From here on changes are for this run only, and not written.
    void keepForThisRun() { writers_.clear(); }

    /// Settings that belong to windows and not to the application.
    [[nodiscard]] QSettings& store() { return *store_; }

    /// What the settings file says of where the library lies.
    static constexpr const char* libraryFolderKey = "libraryFolder";

private:
    AppSettings(StoredSettings stored, std::unique_ptr<QSettings>&& store, std::string_view userName,
                std::string_view locale);

    void keepAll();

    template <typename Value, typename Encode>
    void keep(const char* key, QProperty<Value>& property, Encode encode);

    /// The user's own language.
    std::string userLanguage_;
    std::unique_ptr<QSettings> store_;
    std::optional<std::string> readProblem_;
    /// Keys of values that could not be read and still stand in the store.
    std::vector<const char*> damaged_;
    QTimer writeSoon_;
    std::unique_ptr<QObject> lateWriting_;
    /// What writes a setting as it changes.
    std::vector<QPropertyNotifier> writers_;
};

} // namespace varnic

#pragma once

#include "VarnicCore/Models/Date.h"

#include <string>
#include <variant>

namespace varnic {

/// The states of the one recording session that there can be.
namespace Session {

/// Nothing is happening.
struct Idle {
    bool operator==(const Idle&) const = default;
};

/// The reminder to tell the other party is up.
struct AskingConsent {
    bool operator==(const AskingConsent&) const = default;
};

/// Capture is being set up.
struct Starting {
    bool operator==(const Starting&) const = default;
};

struct Recording {
    Date since;

    bool operator==(const Recording&) const = default;
};

/// Capture is being wound down.
struct Stopping {
    bool operator==(const Stopping&) const = default;
};

/// The last start or stop failed.
struct Failed {
    /// For the user.
    std::string message;

    bool operator==(const Failed&) const = default;
};

} // namespace Session

using SessionState = std::variant<Session::Idle, Session::AskingConsent, Session::Starting, Session::Recording,
                                  Session::Stopping, Session::Failed>;

bool isRecording(const SessionState& state);

/// Whether a recording runs, or is about to start or stop.
bool isBusy(const SessionState& state);

/// What a press of the record button means.
namespace SessionLogic {

enum class Action { showConsent, start, stop, none };

/// `consentSeen` is whether the user needs no reminder before this recording.
Action toggle(const SessionState& state, bool consentSeen);

} // namespace SessionLogic

} // namespace varnic

#include "VarnicCore/Pipeline/SessionState.h"

namespace varnic {

bool isRecording(const SessionState& state) {
    return std::holds_alternative<Session::Recording>(state);
}

bool isBusy(const SessionState& state) {
    return isRecording(state) || std::holds_alternative<Session::Starting>(state) ||
           std::holds_alternative<Session::Stopping>(state);
}

SessionLogic::Action SessionLogic::toggle(const SessionState& state, bool consentSeen) {
    if (isRecording(state)) {
        return Action::stop;
    }
    if (std::holds_alternative<Session::Idle>(state) || std::holds_alternative<Session::Failed>(state)) {
        return consentSeen ? Action::start : Action::showConsent;
    }
    return Action::none;
}

} // namespace varnic

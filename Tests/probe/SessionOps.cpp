#include "probe/Ops.h"

#include "VarnicCore/Pipeline/CallSource.h"
#include "VarnicCore/Pipeline/Consent.h"
#include "VarnicCore/Pipeline/SessionState.h"

namespace varnic::probe {

namespace {

SessionState sessionState(const Arguments& args) {
    const std::map<std::string, SessionState> states{
        {"idle", Session::Idle{}},         {"askingConsent", Session::AskingConsent{}},
        {"starting", Session::Starting{}}, {"recording", Session::Recording{args.now()}},
        {"stopping", Session::Stopping{}}, {"failed", Session::Failed{}},
    };
    const auto found = states.find(args.text("state"));
    if (found == states.end()) {
        throw ProbeError("no such state: " + args.text("state"));
    }
    return found->second;
}

const char* nameOf(SessionLogic::Action action) {
    switch (action) {
    case SessionLogic::Action::showConsent:
        return "showConsent";
    case SessionLogic::Action::start:
        return "start";
    case SessionLogic::Action::stop:
        return "stop";
    case SessionLogic::Action::none:
        break;
    }
    return "none";
}

Json headsUp(const Arguments& args) {
    const auto tone = Consent::toneFrom(args.text("tone"));
    if (!tone) {
        throw ProbeError("no such tone: " + args.text("tone"));
    }
    return Consent::headsUp(*tone, args.text("yourName"));
}

} // namespace

Operations sessionOps() {
    return {
        {"session.toggle",
         [](const Arguments& args) -> Json {
             return nameOf(SessionLogic::toggle(sessionState(args), args.boolean("consentSeen")));
         }},
        {"consent.headsUp", headsUp},
        {"callSource.guess",
         [](const Arguments& args) -> Json {
             return CallSource::guess(args.texts("running"), ifPresent(args, "frontmost", &Arguments::text));
         }},
    };
}

} // namespace varnic::probe

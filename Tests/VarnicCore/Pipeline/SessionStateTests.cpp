#include "VarnicCore/Pipeline/SessionState.h"

#include <gtest/gtest.h>

#include <vector>

namespace varnic {
namespace {

using SessionLogic::Action;

struct Press {
    SessionState state;
    Action seen;
    Action unseen;
    bool isBusy;
};

TEST(SessionLogic, toggle_decidesByStateAndConsent) {
    const std::vector<Press> presses{
        {Session::Idle{}, Action::start, Action::showConsent, false},
        {Session::Failed{"x"}, Action::start, Action::showConsent, false},
        {Session::Recording{currentDate()}, Action::stop, Action::stop, true},
        {Session::AskingConsent{}, Action::none, Action::none, false},
        {Session::Starting{}, Action::none, Action::none, true},
        {Session::Stopping{}, Action::none, Action::none, true},
    };
    for (const auto& [state, seen, unseen, busy] : presses) {
        EXPECT_EQ(SessionLogic::toggle(state, true), seen) << state.index();
        EXPECT_EQ(SessionLogic::toggle(state, false), unseen) << state.index();
        EXPECT_EQ(isBusy(state), busy) << state.index();
        EXPECT_EQ(isRecording(state), seen == Action::stop) << state.index();
    }
}

} // namespace
} // namespace varnic

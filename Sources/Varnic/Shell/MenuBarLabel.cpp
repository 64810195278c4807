#include "Varnic/Shell/MenuBarLabel.h"

#include "VarnicCore/Models/Clock.h"

namespace varnic {

MenuBarLabel MenuBarLabel::of(const SessionState& state, double elapsed) {
    if (isBusy(state)) {
        return {.showsDot = true, .text = Clock::stamp(elapsed), .symbol = {}};
    }
    return {.showsDot = false, .text = {}, .symbol = "pencil.tip.crop.circle"};
}

} // namespace varnic

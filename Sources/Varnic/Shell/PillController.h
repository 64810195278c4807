#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <functional>

namespace varnic {

/// Decides when the floating pill shows. Whoever draws makes a window in `present` that takes no focus, and keeps it
/// in `orderOut`, so that it comes back where the user left it. Main thread; must not outlive the model.
class PillController {
public:
    explicit PillController(AppModel& model) : model_(model) {}

    /// Brings the pill to the front, making it on the first call.
    std::function<void()> present = [] {};
    /// Hides the pill.
    std::function<void()> orderOut = [] {};

    /// Brings the pill in line with the state.
    void refresh();

    [[nodiscard]] bool isVisible() const { return isVisible_; }

private:
    AppModel& model_;
    bool isVisible_ = false;
};

} // namespace varnic

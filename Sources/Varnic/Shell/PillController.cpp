#include "Varnic/Shell/PillController.h"

#include "Varnic/Recording/RecordingController.h"

namespace varnic {

void PillController::refresh() {
    isVisible_ = isBusy(model_.recorder().state()) && model_.settings.showPill.value() && !model_.isDemo;
    if (isVisible_) {
        present();
    } else {
        orderOut();
    }
}

} // namespace varnic

#include "VarnicCore/Audio/CaptureError.h"

namespace varnic {

CaptureError CaptureError::micFailed(const std::string& message) {
    return {Kind::micFailed, "The microphone couldn’t start: " + message};
}

CaptureError CaptureError::systemAudioFailed(const std::string& message) {
    return {Kind::systemAudioFailed, "The Mac’s sound couldn’t be captured: " + message};
}

CaptureError CaptureError::nothingToRecord() {
    return {Kind::nothingToRecord,
            "Varnic couldn’t open the microphone or the Mac’s sound — check Settings › Recording."};
}

CaptureError CaptureError::noDisplay() {
    return {Kind::noDisplay, "No display was found to capture sound from."};
}

} // namespace varnic

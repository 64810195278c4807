#include "VarnicCLI/MissingDevices.h"

namespace varnic::cli {

std::vector<std::string> missingDevices(const SoundSurvey& survey) {
    if (!survey.isReachable) {
        return {
            "The sound system, PipeWire, isn’t running: nothing can be recorded. It is in the packages pipewire and "
            "wireplumber."};
    }
    if (!survey.hasSound) {
        return {"PipeWire is running, but has no sound devices: nothing can be recorded. If PulseAudio runs the sound, "
                "install pipewire-pulse in its place."};
    }
    std::vector<std::string> sentences;
    if (!survey.microphone) {
        sentences.emplace_back("There is no microphone: your side is recorded once there is one.");
    }
    if (!survey.output) {
        sentences.emplace_back("There is no sound output: the other side can’t be heard or recorded.");
    }
    return sentences;
}

} // namespace varnic::cli

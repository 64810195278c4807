#include "VarnicCore/Models/Wording.h"

#include <array>
#include <utility>

namespace varnic::Wording {

namespace {

struct Phrase {
    std::string_view original;
    std::string_view here;
};

/// Longer phrases stand before those that they contain.
constexpr std::array phrases{
    Phrase{"their side needs Screen Recording", "the computer’s sound can’t be heard"},
    Phrase{"Speech Recognition is turned off for Varnic.",
           "No speech model is installed. On Debian there is one for English in the package varnic-models, and one for "
           "99 languages in varnic-models-whisper."},
    Phrase{
        "can’t be transcribed on this Mac yet.",
        "can’t be transcribed on this computer yet. On Debian there is a speech model for 99 languages in the package "
        "varnic-models-whisper."},
    Phrase{"this Mac", "this computer"},
    Phrase{"my Mac", "my computer"},
    Phrase{"your Mac", "your computer"},
    Phrase{"The Mac", "The computer"},
    Phrase{"the Mac", "the computer"},
    Phrase{"Keychain", "key ring"},
    Phrase{"keychain", "key ring"},
    Phrase{"Finder", "Files"},
    Phrase{"System Settings", "Settings"},
    Phrase{"macOS", "Linux"},
    Phrase{"menu-bar icon", "tray icon"},
    Phrase{"Meet, Teams or FaceTime", "Meet or Teams"},
    Phrase{"Teams, FaceTime or browser", "Teams or browser"},
};

} // namespace

std::string shown(std::string_view text) {
    std::string result(text);
    for (const auto& [original, here] : phrases) {
        for (std::size_t at = result.find(original); at != std::string::npos;
             at = result.find(original, at + here.size())) {
            result.replace(at, original.size(), here);
        }
    }
    return result;
}

Note shown(Note note) {
    if (note.call) {
        if (note.call->problem) {
            note.call->problem = shown(*note.call->problem);
        }
        if (note.call->digest) {
            note.call->digest->provider = shown(note.call->digest->provider);
        }
    }
    return note;
}

} // namespace varnic::Wording

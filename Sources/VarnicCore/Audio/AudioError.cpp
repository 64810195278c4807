#include "VarnicCore/Audio/AudioError.h"

namespace varnic {

namespace {

std::string sentence(AudioError::Kind kind, const std::filesystem::path& file) {
    const std::string name = "“" + file.filename().string() + "”";
    switch (kind) {
    case AudioError::Kind::missing:
        return name + " is no longer there.";
    case AudioError::Kind::unreadable:
        return name + " can’t be opened.";
    case AudioError::Kind::empty:
        return name + " is empty.";
    case AudioError::Kind::protectedFile:
        return name + " is protected against being read by other programs.";
    case AudioError::Kind::noSound:
        break;
    }
    return name + " doesn’t hold any sound Varnic can read.";
}

} // namespace

AudioError::AudioError(Kind kind, const std::filesystem::path& file)
    : std::runtime_error(sentence(kind, file)), kind_(kind) {}

} // namespace varnic

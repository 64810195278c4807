#include "VarnicCore/Audio/TranscriberError.h"

#include <utility>

namespace varnic {

TranscriberError::TranscriberError(Kind kind, std::string detail, const std::string& sentence)
    : std::runtime_error(sentence), kind_(kind), detail_(std::move(detail)) {}

TranscriberError TranscriberError::noOnDevice(const std::string& languageName) {
    return {Kind::noOnDevice, languageName, languageName + " can’t be transcribed on this Mac yet."};
}

TranscriberError TranscriberError::failed(const std::string& message) {
    return {Kind::failed, message, "Transcription failed: " + message};
}

TranscriberError TranscriberError::notAuthorized() {
    return {Kind::notAuthorized, {}, "Speech Recognition is turned off for Varnic."};
}

TranscriberError TranscriberError::unavailable() {
    return {Kind::unavailable, {}, "Speech recognition isn’t available right now."};
}

TranscriberError TranscriberError::missingFile() {
    return {Kind::missingFile, {}, "The recording’s audio file is missing."};
}

} // namespace varnic

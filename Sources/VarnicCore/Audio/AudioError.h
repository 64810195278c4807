#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace varnic {

/// Why a file's audio cannot be read; `what()` is the user's sentence and names the file without its folder.
class AudioError : public std::runtime_error {
public:
    enum class Kind {
        missing,       ///< There is no file at the path.
        unreadable,    ///< The system does not let us read it, or it is no regular file.
        empty,         ///< It has no bytes.
        protectedFile, ///< Its audio is encrypted.
        noSound,       ///< It is of an unknown kind, or damaged beyond reading, or has no audio in it.
    };

    AudioError(Kind kind, const std::filesystem::path& file);

    [[nodiscard]] Kind kind() const { return kind_; }

private:
    Kind kind_;
};

} // namespace varnic

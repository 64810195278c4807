#include "BrevinKit/Bundle/OpenFile.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace brevin {

void throwErrno() {
    throw std::runtime_error(std::generic_category().message(errno) + ".");
}

OpenFile::OpenFile(const std::filesystem::path& file, int flags, mode_t mode)
    : number_(::open(file.c_str(), flags | O_CLOEXEC, mode)) {
    if (number_ < 0) {
        throwErrno();
    }
}

OpenFile::~OpenFile() {
    ::close(number_);
}

void OpenFile::write(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(number_, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            throwErrno();
        }
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

} // namespace brevin

#include "VarnicPlatform/Desktop/FolderWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace varnic {

namespace {

constexpr std::uint32_t finishedWrites = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr std::uint32_t ends = IN_MOVE_SELF | IN_DELETE_SELF | IN_UNMOUNT | IN_IGNORED;

FileDescriptor watching(const std::filesystem::path& folder) {
    FileDescriptor descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (descriptor.isOpen() &&
        ::inotify_add_watch(descriptor.number(), folder.c_str(), finishedWrites | IN_MOVE_SELF | IN_ONLYDIR) < 0) {
        return FileDescriptor(-1);
    }
    // Whoever moves a folder above this one moves this one without a word.
    for (std::filesystem::path above = std::filesystem::absolute(folder); above.has_relative_path();) {
        above = above.parent_path();
        ::inotify_add_watch(descriptor.number(), above.c_str(), IN_MOVE_SELF | IN_MASK_ADD | IN_ONLYDIR);
    }
    return descriptor;
}

} // namespace

FolderWatch::FolderWatch(const std::filesystem::path& folder) : descriptor_(watching(folder)) {}

std::optional<std::set<std::string>> FolderWatch::news() {
    std::set<std::string> names;
    bool isMissing = false;
    std::array<char, 16'384> bytes{};
    for (ssize_t count = 0; (count = ::read(descriptor_.number(), bytes.data(), bytes.size())) > 0;) {
        for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
            inotify_event event{};
            std::memcpy(&event, bytes.data() + at, sizeof event);
            isOver_ = isOver_ || (event.mask & ends) != 0;
            isMissing = isMissing || (event.mask & IN_Q_OVERFLOW) != 0;
            if (event.len > 0) {
                names.insert(bytes.data() + at + sizeof event);
            }
            at += sizeof event + event.len;
        }
    }
    return isMissing ? std::nullopt : std::optional(std::move(names));
}

} // namespace varnic

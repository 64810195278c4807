#include "VarnicCore/Library/LibraryMove.h"

#include "VarnicCore/Files/AtomicWrite.h"
#include "VarnicCore/Files/FileDescriptor.h"
#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/Library/RecordingMark.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <ranges>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace varnic {

namespace fs = std::filesystem;

namespace {

/// Belongs to the process that has the library open, and not to the library.
constexpr const char* runningName = "running.lock";
constexpr std::size_t blockSize = 1UL << 20U;
/// Bytes that stay free on the disk, so that there is room for the next call.
constexpr std::uintmax_t slack = 64UL << 20U;

/// The folders of a library; see LibraryStore.
const std::set<std::string_view>& libraryFolders() {
    static const std::set<std::string_view> names{"notes", "audio", "Deleted", "Earlier"};
    return names;
}

bool isInside(const fs::path& inner, const fs::path& outer) {
    return std::ranges::mismatch(inner, outer).in2 == outer.end();
}

/// Whole paths without links, also of what is not there yet.
fs::path plain(const fs::path& path) {
    std::error_code failure;
    const fs::path found = fs::weakly_canonical(fs::absolute(path), failure);
    const fs::path whole = failure ? fs::absolute(path).lexically_normal() : found;
    return whole.has_filename() ? whole : whole.parent_path();
}

/// Empty where there is no such file.
std::string textOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void expectGoingOn(const std::stop_token& stop) {
    if (stop.stop_requested()) {
        throw LibraryMoveError("Stopped. The library is where it was.");
    }
}

FileDescriptor opened(const fs::path& file, int flags, mode_t mode = 0) {
    FileDescriptor descriptor(::open(file.c_str(), flags | O_CLOEXEC | O_NOFOLLOW, mode));
    if (!descriptor.isOpen()) {
        throw LibraryError::fromErrno((flags & O_ACCMODE) == O_RDONLY ? "read" : "written", file);
    }
    return descriptor;
}

/// As many bytes as there are, up to a block.
std::size_t readBlock(const FileDescriptor& file, const fs::path& name, std::vector<char>& block) {
    std::size_t count = 0;
    while (count < block.size()) {
        const ssize_t got = ::read(file.number(), block.data() + count, block.size() - count);
        if (got < 0 && errno != EINTR) {
            throw LibraryError::fromErrno("read", name);
        }
        if (got == 0) {
            break;
        }
        count += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
    }
    return count;
}

void writeBlock(const FileDescriptor& file, const fs::path& name, const std::vector<char>& block, std::size_t count) {
    for (std::size_t done = 0; done < count;) {
        const ssize_t put = ::write(file.number(), block.data() + done, count - done);
        if (put < 0 && errno != EINTR) {
            throw LibraryError::fromErrno("written", name);
        }
        done += static_cast<std::size_t>(std::max<ssize_t>(put, 0));
    }
}

} // namespace

LibraryMove::LibraryMove(const fs::path& from, const fs::path& to) : from_(plain(from)), to_(plain(to)) {
    checkPlace();
    checkRoom();
}

LibraryMove::~LibraryMove() {
    if (isPrepared_ && !isSettled_) {
        removeCopy();
    }
}

/// Which computer moves what.
std::string LibraryMove::markText() const {
    return fmt::format("{}{}\n", textOf("/etc/machine-id"), from_.string());
}

void LibraryMove::checkPlace() const {
    const std::string shown = fmt::format("“{}”", to_.string());
    if (to_ == from_) {
        throw LibraryMoveError(fmt::format("The library is in {} already.", shown));
    }
    if (isInside(to_, from_)) {
        throw LibraryMoveError(fmt::format("{} is inside the library. Choose a folder outside of it.", shown));
    }
    if (isInside(from_, to_)) {
        throw LibraryMoveError(fmt::format("{} holds the library as it is. Choose another folder.", shown));
    }
    struct stat status{};
    if (::stat(to_.c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) {
        throw LibraryMoveError(fmt::format("{} is not a folder.", shown));
    }
    std::vector<fs::path> entries;
    try {
        entries = Folders::list(to_);
    } catch (const LibraryError&) {
        throw LibraryMoveError(fmt::format("{} can’t be looked into.", shown));
    }
    const bool isOurs = textOf(to_ / markName) == markText();
    if (!isOurs && fs::exists(to_ / markName)) {
        throw LibraryMoveError(
            fmt::format("{} holds a library that is still being moved there, or what is left of such "
                        "a move. Choose another folder.",
                        shown));
    }
    if (!isOurs && LibraryStore::isIn(to_)) {
        throw OtherLibraryError(fmt::format("{} holds a library already.", shown));
    }
    for (const fs::path& entry : entries) {
        const std::string name = entry.filename().string();
        if (!isOurs || (name != markName && !libraryFolders().contains(name))) {
            throw LibraryMoveError(
                fmt::format("{} holds something already. Choose an empty folder, or make a new one.", shown));
        }
    }
    fs::path there = to_;
    while (!fs::exists(there) && there.has_relative_path()) {
        there = there.parent_path();
    }
    if (::access(there.c_str(), W_OK | X_OK) != 0) {
        throw LibraryMoveError(fmt::format("Nothing can be written into “{}” ({}).", there.string(),
                                           std::generic_category().message(errno)));
    }
}

void LibraryMove::checkRoom() const {
    std::uintmax_t needed = slack;
    for (const auto& [name, entry] : list()) {
        needed += S_ISREG(entry.mode) ? static_cast<std::uintmax_t>(entry.size) : 0;
    }
    fs::path there = to_;
    while (!fs::exists(there) && there.has_relative_path()) {
        there = there.parent_path();
    }
    std::error_code failure;
    const fs::space_info room = fs::space(there, failure);
    if (!failure && room.available < needed) {
        constexpr double megabyte = 1e6;
        throw LibraryMoveError(
            fmt::format("There is no room for the library on that disk: it takes {:.0f} MB, and {:.0f} "
                        "MB are free.",
                        static_cast<double>(needed) / megabyte, static_cast<double>(room.available) / megabyte));
    }
}

LibraryMove::Seen LibraryMove::seen(const fs::path& file) {
    struct stat status{};
    if (::lstat(file.c_str(), &status) != 0) {
        throw LibraryError::fromErrno("read", file);
    }
    return {.mode = status.st_mode, .size = status.st_size, .changed = status.st_mtim, .file = status.st_ino};
}

/// Everything in the library by its name there, folders ahead of what they hold.
LibraryMove::Files LibraryMove::list() const {
    Files files;
    std::vector<fs::path> folders{from_};
    while (!folders.empty()) {
        const fs::path folder = std::move(folders.back());
        folders.pop_back();
        for (const fs::path& entry : Folders::list(folder)) {
            if (folder == from_ && entry.filename() == runningName) {
                continue;
            }
            Seen found;
            try {
                found = seen(entry);
            } catch (const LibraryError& error) {
                if (error.code() == std::errc::no_such_file_or_directory) {
                    continue; // gone since the folder was listed
                }
                throw;
            }
            if (S_ISREG(found.mode) && AtomicWrite::isTemporary(entry)) {
                continue;
            }
            if (S_ISDIR(found.mode)) {
                folders.push_back(entry);
            }
            files[entry.lexically_relative(from_)] = found;
        }
    }
    return files;
}

/// Makes the folder, with the mark in it, and takes away what a killed move left of its copy.
void LibraryMove::prepareTarget() {
    checkPlace();
    madeTarget_ = !fs::exists(to_);
    Folders::make(to_);
    isPrepared_ = true;
    AtomicWrite::replace(to_ / markName, markText());
    for (const fs::path& entry : Folders::list(to_)) {
        if (entry.filename() != markName) {
            Folders::removeAll(entry);
        }
    }
}

/// The mark goes last, so that a kill in between leaves remains that are known as such. What others have put there
/// stays.
void LibraryMove::removeCopy() const {
    for (const auto& [name, entry] : copied_) {
        Folders::removeAll(to_ / *name.begin());
    }
    Folders::removeAll(to_ / markName);
    if (madeTarget_) {
        ::rmdir(to_.c_str()); // unless somebody else has put something there
    }
}

void LibraryMove::copyOne(const fs::path& name, const Seen& entry, const Report& report, const std::stop_token& stop) {
    const fs::path source = from_ / name;
    const fs::path copy = to_ / name;
    if (S_ISDIR(entry.mode)) {
        Folders::make(copy);
        ::chmod(copy.c_str(), (entry.mode & 07777U) | S_IRWXU);
        return;
    }
    if (S_ISLNK(entry.mode)) {
        const fs::path leadsTo = fs::read_symlink(source);
        Folders::removeAll(copy);
        // A relative link leads to the same place from elsewhere.
        fs::create_symlink(leadsTo.is_absolute() ? leadsTo : (source.parent_path() / leadsTo).lexically_normal(), copy);
        return;
    }
    if (!S_ISREG(entry.mode)) {
        throw LibraryMoveError(fmt::format("“{}” is no file that can be copied.", source.string()));
    }
    const FileDescriptor in = opened(source, O_RDONLY);
    Folders::removeAll(copy);
    const FileDescriptor out = opened(copy, O_WRONLY | O_CREAT | O_EXCL, entry.mode & 0777U);
    std::vector<char> block(blockSize);
    for (std::size_t count = readBlock(in, source, block); count > 0; count = readBlock(in, source, block)) {
        expectGoingOn(stop);
        writeBlock(out, copy, block, count);
        report(static_cast<double>(count));
    }
    const std::array times{timespec{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, entry.changed};
    ::futimens(out.number(), times.data()); // which some file systems can't
}

/// Programs go on to rename and remove files; another `catchUp` sees to those.
void LibraryMove::copyIfThere(const fs::path& name, const Seen& entry, const Report& report,
                              const std::stop_token& stop) {
    copied_[name] = entry; // also what is half copied is to be removed
    try {
        copyOne(name, entry, report, stop);
    } catch (const LibraryError&) {
        if (std::error_code ignored; fs::exists(fs::symlink_status(from_ / name, ignored))) {
            throw;
        }
        copied_.erase(name);
    }
}

/// Throws where the copy isn't what the original was. One that has changed since is copied anew later.
void LibraryMove::compareOne(const fs::path& name, const Report& report, const std::stop_token& stop) const {
    const fs::path source = from_ / name;
    const fs::path copy = to_ / name;
    FileDescriptor in(::open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!in.isOpen() && errno == ENOENT) {
        return;
    }
    const FileDescriptor out = opened(copy, O_RDONLY);
    // What is on the disk, and not what memory holds of it.
    ::posix_fadvise(out.number(), 0, 0, POSIX_FADV_DONTNEED);
    std::vector<char> block(blockSize);
    std::vector<char> other(blockSize);
    for (;;) {
        expectGoingOn(stop);
        const std::size_t count = readBlock(in, source, block);
        if (readBlock(out, copy, other) != count || std::memcmp(block.data(), other.data(), count) != 0) {
            if (seen(source) == copied_.at(name)) {
                throw LibraryMoveError(
                    fmt::format("“{}” did not come out as the original. Is the disk all right?", copy.string()));
            }
            return;
        }
        report(static_cast<double>(count));
        if (count < block.size()) {
            return;
        }
    }
}

/// Deleted notes are kept for so many days from the time of their folders.
void LibraryMove::keepTimes(const Files& files) const {
    for (const auto& [name, entry] : files) {
        if (S_ISDIR(entry.mode)) {
            const std::array times{timespec{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, entry.changed};
            ::utimensat(AT_FDCWD, (to_ / name).c_str(), times.data(), 0);
        }
    }
}

void LibraryMove::forceToDisk() const {
    const FileDescriptor folder = opened(to_, O_RDONLY | O_DIRECTORY);
    if (::syncfs(folder.number()) != 0) {
        throw LibraryError::fromErrno("written", to_);
    }
    const FileDescriptor parent(::open(to_.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (parent.isOpen()) {
        ::fsync(parent.number());
    }
}

void LibraryMove::copy(const Report& report, const std::stop_token& stop) {
    prepareTarget();
    const Files files = list();
    double total = 1;
    for (const auto& [name, entry] : files) {
        total += S_ISREG(entry.mode) ? 2 * static_cast<double>(entry.size) : 0;
    }
    double done = 0;
    const Report count = [&](double bytes) {
        done += bytes;
        report(std::min(done / total, 1.0));
    };
    for (const auto& [name, entry] : files) {
        expectGoingOn(stop);
        copyIfThere(name, entry, count, stop);
    }
    keepTimes(files);
    forceToDisk();
    for (const auto& [name, entry] : files) {
        if (S_ISREG(entry.mode) && copied_.contains(name)) {
            compareOne(name, count, stop);
        }
    }
    report(1);
}

/// Other programs hold a call's folder while they record or transcribe it, and would write into the old place.
void LibraryMove::expectNobodyWorks() const {
    for (const fs::path& folder : Folders::list(from_ / "audio")) {
        std::error_code ignored;
        if (!fs::is_directory(folder, ignored)) {
            continue;
        }
        const bool isRecorded = RecordingMarkFile::isIn(folder) && !RecordingMarkFile::adopt(folder);
        if (isRecorded || !LibraryLock::forCall(folder)) {
            throw LibraryMoveError("Another program is working on a call. Move the library when it has finished.");
        }
    }
}

/// Whether the copy has the entry as it is; what a folder holds are entries of their own.
bool LibraryMove::isCopied(const fs::path& name, const Seen& entry) const {
    const auto copy = copied_.find(name);
    if (copy == copied_.end()) {
        return false;
    }
    return copy->second == entry || (S_ISDIR(entry.mode) && copy->second.mode == entry.mode);
}

bool LibraryMove::isCurrent() const {
    expectNobodyWorks();
    const Files now = list();
    return now.size() == copied_.size() &&
           std::ranges::all_of(now, [this](const auto& file) { return isCopied(file.first, file.second); });
}

void LibraryMove::catchUp() {
    expectNobodyWorks();
    const Files now = list();
    bool hasChanged = false;
    for (const auto& [name, entry] : std::views::reverse(copied_)) {
        if (!now.contains(name)) {
            Folders::removeAll(to_ / name);
            hasChanged = true;
        }
    }
    std::erase_if(copied_, [&](const auto& file) { return !now.contains(file.first); });
    const Report nobody = [](double) {};
    std::vector<fs::path> renewed;
    for (const auto& [name, entry] : now) {
        if (isCopied(name, entry)) {
            continue;
        }
        const auto before = copied_.find(name);
        if (!S_ISDIR(entry.mode) && before != copied_.end() && S_ISDIR(before->second.mode)) {
            Folders::removeAll(to_ / name);
        }
        copyIfThere(name, entry, nobody, {});
        hasChanged = true;
        if (S_ISREG(entry.mode) && copied_.contains(name)) {
            renewed.push_back(name);
        }
    }
    if (!hasChanged) {
        return;
    }
    keepTimes(now);
    forceToDisk();
    for (const fs::path& name : renewed) {
        compareOne(name, nobody, {});
    }
}

void LibraryMove::settle() {
    isSettled_ = true;
    Folders::removeAll(to_ / markName);
}

std::size_t LibraryMove::removeOriginal() {
    std::size_t left = 0;
    Files now;
    try {
        now = list();
    } catch (const LibraryError&) {
        return 1;
    }
    // What a folder holds comes behind it, so backwards; a folder's own time has changed by then.
    for (const auto& [name, entry] : std::views::reverse(now)) {
        const fs::path original = from_ / name;
        const auto copy = copied_.find(name);
        if (S_ISDIR(entry.mode)) {
            ::rmdir(original.c_str()); // unless something stays in there
        } else if (copy == copied_.end() || !(copy->second == entry) || ::unlink(original.c_str()) != 0) {
            ++left;
        }
    }
    ::unlink((from_ / runningName).c_str());
    ::rmdir(from_.c_str());
    return left;
}

} // namespace varnic

#include "VarnicCore/Library/RecordingMark.h"

#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Library/NoteJson.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <exception>
#include <string_view>
#include <utility>

namespace varnic {

namespace fs = std::filesystem;

namespace {

constexpr const char* fileName = "recording.json";
/// Far more than a mark needs.
constexpr std::size_t mostBytes = 65'536;
/// How often a folder is made again that another process takes for abandoned and removes. On a busy computer one that
/// looks all the time came between five times in a row.
constexpr int attempts = 100;

std::string textOf(const RecordingMark& mark) {
    nlohmann::json sides = nlohmann::json::array();
    for (const Speaker speaker : mark.sides) {
        sides.push_back(rawValue(speaker));
    }
    return jsonText({{"id", mark.id.text()},
                     {"startedAt", formatDate(mark.startedAt)},
                     {"source", mark.source},
                     {"sides", sides},
                     {"process", ::getpid()}});
}

nlohmann::json parsed(int file) {
    std::string text(mostBytes, '\0');
    const ssize_t count = ::pread(file, text.data(), text.size(), 0);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return nlohmann::json::parse(text, nullptr, false);
}

bool isAlive(pid_t process) {
    return process > 0 && (::kill(process, 0) == 0 || errno == EPERM);
}

/// Whether the file is ours now. Where the file system knows no locks, whether its process is dead.
bool lock(int file) {
    if (::flock(file, LOCK_EX | LOCK_NB) == 0) {
        return true;
    }
    if (errno == EWOULDBLOCK) {
        return false;
    }
    const nlohmann::json json = parsed(file);
    const auto process = json.is_object() ? json.find("process") : json.end();
    return process == json.end() || !process->is_number_integer() || !isAlive(process->get<pid_t>());
}

bool isUnnamed(const fs::path& file) {
    return file.filename().string().starts_with(fmt::format(".{}.", fileName)) && file.extension() == ".tmp";
}

/// Removes a mark that has no name yet, unless a living process has it.
void removeUnnamed(const fs::path& file) {
    const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (descriptor.isOpen() && lock(descriptor.number())) {
        ::unlink(file.c_str());
    }
}

bool writeAll(int file, std::string_view bytes) {
    return ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) && ::fsync(file) == 0;
}

} // namespace

RecordingMarkFile::RecordingMarkFile(fs::path file, FileDescriptor descriptor)
    : file_(std::move(file)), descriptor_(std::move(descriptor)) {}

RecordingMarkFile RecordingMarkFile::create(const fs::path& folder, const RecordingMark& mark) {
    for (int attempt = 1;; ++attempt) {
        Folders::make(folder);
        try {
            return place(folder, mark);
        } catch (const LibraryError& error) {
            if (error.code() != std::errc::no_such_file_or_directory || attempt == attempts) {
                throw;
            }
        }
    }
}

/// The file is locked and filled before it gets its name, so that nobody finds it otherwise.
RecordingMarkFile RecordingMarkFile::place(const fs::path& folder, const RecordingMark& mark) {
    const fs::path file = folder / fileName;
    if (isIn(folder) && !adopt(folder)) {
        throw LibraryError("made", file, std::make_error_code(std::errc::file_exists));
    }
    const fs::path unnamed = folder / fmt::format(".{}.{}.tmp", fileName, Uuid::random().text());
    FileDescriptor descriptor(::open(unnamed.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!descriptor.isOpen()) {
        throw LibraryError::fromErrno("made", file);
    }
    // Who has it now is about to remove it.
    static_cast<void>(::flock(descriptor.number(), LOCK_EX));
    if (!writeAll(descriptor.number(), textOf(mark)) || ::rename(unnamed.c_str(), file.c_str()) != 0) {
        const int reason = errno;
        ::unlink(unnamed.c_str());
        errno = reason;
        throw LibraryError::fromErrno("written", file);
    }
    return {file, std::move(descriptor)};
}

std::optional<RecordingMarkFile> RecordingMarkFile::adopt(const fs::path& folder) {
    const fs::path file = folder / fileName;
    FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!descriptor.isOpen() || !lock(descriptor.number())) {
        return std::nullopt;
    }
    // Its owner may have removed it in the meantime.
    struct stat status{};
    if (::fstat(descriptor.number(), &status) != 0 || status.st_nlink == 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return RecordingMarkFile(file, std::move(descriptor));
}

void RecordingMarkFile::removeUnborn(const fs::path& folder) {
    for (const fs::path& entry : Folders::entries(folder)) {
        if (isUnnamed(entry)) {
            removeUnnamed(entry);
        }
    }
    ::rmdir(folder.c_str()); // which leaves a folder that holds something
}

bool RecordingMarkFile::isIn(const fs::path& folder) {
    std::error_code ignored;
    return fs::symlink_status(folder / fileName, ignored).type() != fs::file_type::not_found;
}

std::optional<RecordingMark> RecordingMarkFile::read() const {
    try {
        const nlohmann::json json = parsed(descriptor_.number());
        RecordingMark mark{
            {}, parseDate(json.at("startedAt").get<std::string>()), json.at("source").get<std::string>(), {}};
        const auto id = Uuid::parse(json.at("id").get<std::string>());
        for (const nlohmann::json& side : json.at("sides")) {
            mark.sides.push_back(speakerFrom(side.get<std::string>()).value());
        }
        mark.id = id.value();
        return mark;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void RecordingMarkFile::remove() {
    ::unlink(file_.c_str());
}

} // namespace varnic

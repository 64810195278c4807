#include "BrevinKit/Bundle/Unpacking.h"

#include "BrevinKit/Bundle/OpenFile.h"

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevin::Unpacking {

namespace {

namespace fs = std::filesystem;

struct FreeReader {
    void operator()(archive* reader) const { archive_read_free(reader); }
};

using Reader = std::unique_ptr<archive, FreeReader>;

[[noreturn]] void damaged() {
    throw std::runtime_error("The archive is damaged.");
}

[[noreturn]] void refused() {
    throw std::runtime_error("The archive holds what no app should hold.");
}

/// Everything that is not quite right counts, a wrong checksum too, which the library only warns of.
void check(int result) {
    if (result != ARCHIVE_OK) {
        damaged();
    }
}

Reader opened(std::span<const std::uint8_t> zip) {
    Reader reader(archive_read_new());
    if (!reader) {
        throw std::bad_alloc();
    }
    // By its table of contents, which stands at the end: an archive that is cut has none.
    check(archive_read_support_format_zip_seekable(reader.get()));
    check(archive_read_set_options(reader.get(), "hdrcharset=UTF-8"));
    check(archive_read_open_memory(reader.get(), zip.data(), zip.size()));
    return reader;
}

/// The names that a path goes through.
std::vector<std::string_view> steps(std::string_view path) {
    std::vector<std::string_view> names;
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        names.push_back(name);
    }
    return names;
}

bool isPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           std::ranges::none_of(name, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::string textOf(const char* text) {
    if (text == nullptr) {
        refused();
    }
    return text;
}

class Unpacker {
public:
    Unpacker(std::span<const std::uint8_t> zip, const fs::path& folder, const Limits& limits)
        : reader_(opened(zip)), folder_(folder), bytesLeft_(limits.bytes), entriesLeft_(limits.entries) {}

    void run() {
        archive_entry* entry = nullptr;
        for (int result = ARCHIVE_OK; (result = archive_read_next_header(reader_.get(), &entry)) != ARCHIVE_EOF;) {
            check(result);
            take(entry);
        }
    }

private:
    void take(archive_entry* entry) {
        if (entriesLeft_-- == 0) {
            tooMuch();
        }
        std::string path = textOf(archive_entry_pathname_utf8(entry));
        if (path.ends_with('/')) {
            path.pop_back();
        }
        const std::vector<std::string_view> names = steps(path);
        const mode_t mode = archive_entry_perm(entry);
        constexpr mode_t ordinary = 0777;
        if (names.empty() || !std::ranges::all_of(names, isPlainName) || (mode & ~ordinary) != 0 ||
            archive_entry_hardlink(entry) != nullptr) {
            refused();
        }
        makeParents(names);
        if (!taken_.insert(path).second) {
            refused();
        }
        switch (archive_entry_filetype(entry)) {
        case AE_IFREG:
            writeFile(folder_ / path, mode);
            break;
        case AE_IFDIR:
            makeFolder(path, mode);
            break;
        case AE_IFLNK:
            makeLink(folder_ / path, names.size(), textOf(archive_entry_symlink_utf8(entry)));
            break;
        default:
            refused();
        }
    }

    /// Nothing is ever put into anything but a folder that was made here, so that no link is followed.
    void makeParents(const std::vector<std::string_view>& names) {
        constexpr mode_t usual = 0755;
        std::string path;
        for (const std::string_view name : std::span(names).first(names.size() - 1)) {
            path.append(path.empty() ? "" : "/").append(name);
            if (taken_.insert(path).second) {
                makeFolder(path, usual);
            } else if (!folders_.contains(path)) {
                refused();
            }
        }
    }

    void makeFolder(const std::string& path, mode_t mode) {
        if ((mode & S_IRWXU) != S_IRWXU) {
            refused(); // Nobody could replace it.
        }
        if (::mkdir((folder_ / path).c_str(), S_IRWXU) != 0 || ::chmod((folder_ / path).c_str(), mode) != 0) {
            throwErrno();
        }
        folders_.insert(path);
    }

    void writeFile(const fs::path& file, mode_t mode) {
        const OpenFile opened(file, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW);
        for (std::vector<char> bytes(chunk);;) {
            const la_ssize_t count = archive_read_data(reader_.get(), bytes.data(), bytes.size());
            if (count < 0) {
                damaged();
            }
            if (count == 0) {
                break;
            }
            const auto size = static_cast<std::size_t>(count);
            if (size > bytesLeft_) {
                tooMuch();
            }
            bytesLeft_ -= size;
            opened.write({bytes.data(), size});
        }
        if (::fchmod(opened.number(), mode) != 0) {
            throwErrno();
        }
    }

    /// `depth` counts the names of the link's own path. Since that goes through folders only, a target stays within the
    /// topmost one if it goes up at its front alone, and not that far.
    static void makeLink(const fs::path& link, std::size_t depth, const std::string& target) {
        const std::vector<std::string_view> names = steps(target);
        const auto down = std::ranges::find_if(names, [](std::string_view name) { return name != ".."; });
        const auto ups = static_cast<std::size_t>(down - names.begin());
        if (names.empty() || depth < 2 || ups > depth - 2 || !std::all_of(down, names.end(), isPlainName)) {
            refused();
        }
        if (::symlink(target.c_str(), link.c_str()) != 0) {
            throwErrno();
        }
    }

    [[noreturn]] static void tooMuch() { throw std::runtime_error("The archive holds more than its size allows for."); }

    static constexpr std::size_t chunk = 256UL * 1024;

    Reader reader_;
    const fs::path& folder_;
    std::uint64_t bytesLeft_;
    std::size_t entriesLeft_;
    /// All paths so far, and which of them are folders.
    std::set<std::string> taken_;
    std::set<std::string> folders_;
};

} // namespace

Limits Limits::forArchive(std::size_t length) {
    constexpr std::uint64_t growth = 20;
    constexpr std::uint64_t always = 1024UL * 1024;
    constexpr std::size_t mostEntries = 50'000;
    /// Each entry has two heads of at least 30 and 46 bytes.
    constexpr std::size_t shortestEntry = 76;
    return {.bytes = growth * length + always, .entries = std::min(length / shortestEntry, mostEntries)};
}

void unpack(std::span<const std::uint8_t> zip, const fs::path& folder, const Limits& limits) {
    Unpacker(zip, folder, limits).run();
}

} // namespace brevin::Unpacking

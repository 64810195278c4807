#include "BrevinKit/Bundle/Unpacking.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string>

namespace {

namespace fs = std::filesystem;

/// A fresh folder of this process, in memory where the system has such a place.
fs::path makeFolder() {
    const char* const memory = fs::exists("/dev/shm") ? "/dev/shm" : "/tmp";
    std::string name = std::string(memory) + "/fuzz-archive-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) {
        std::abort();
    }
    return name;
}

/// What was unpacked is files, folders and links that stay in the topmost folder, within the limits.
void inspect(const fs::path& folder, const brevin::Unpacking::Limits& limits) {
    std::uintmax_t bytes = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        const fs::file_status status = entry.symlink_status();
        if (fs::is_regular_file(status)) {
            bytes += entry.file_size();
        } else if (fs::is_symlink(status)) {
            const fs::path inside = entry.path().lexically_relative(folder);
            const fs::path target = fs::weakly_canonical(entry.path().parent_path() / fs::read_symlink(entry.path()));
            const fs::path reached = target.lexically_relative(fs::canonical(folder));
            if (*reached.begin() != *inside.begin()) {
                std::abort();
            }
        } else if (!fs::is_directory(status)) {
            std::abort();
        }
        if (!fs::is_symlink(status) && (status.permissions() & ~fs::perms::all) != fs::perms::none) {
            std::abort();
        }
    }
    if (bytes > limits.bytes) {
        std::abort();
    }
}

} // namespace

/// Unpacks any bytes: what comes of them stays in the folder, and is an app’s or an error.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fs::path around = makeFolder();
    const fs::path folder = around / "in";
    fs::remove_all(folder);
    fs::create_directory(folder);
    const auto limits = brevin::Unpacking::Limits::forArchive(size);
    try {
        brevin::Unpacking::unpack({data, size}, folder, limits);
    } catch (const std::runtime_error&) {
        // What was refused may have left a part.
    }
    inspect(folder, limits);
    if (std::distance(fs::directory_iterator(around), {}) != 1) {
        std::abort();
    }
    return 0;
}

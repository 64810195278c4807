#include "BrevinKit/Updater/Staging.h"

#include "BrevinKit/Bundle/BundleInfo.h"
#include "BrevinKit/Bundle/Manifest.h"
#include "BrevinKit/Bundle/OpenFile.h"
#include "BrevinKit/Bundle/Unpacking.h"
#include "BrevinKit/UpdateError.h"
#include "BrevinKit/UpdateLogic.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <span>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/xattr.h>

namespace brevin::Staging {

namespace {

namespace fs = std::filesystem;

/// A file’s bytes, read as they are asked for: an archive of 100 MB takes no memory that the system can’t have back.
class MappedFile {
public:
    explicit MappedFile(const fs::path& file) {
        const OpenFile opened(file, O_RDONLY);
        size_ = static_cast<std::size_t>(fs::file_size(file));
        void* start = size_ == 0 ? nullptr : ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, opened.number(), 0);
        if (start == MAP_FAILED) {
            throwErrno();
        }
        start_ = static_cast<const std::uint8_t*>(start);
    }

    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    ~MappedFile() {
        if (start_ != nullptr) {
            ::munmap(const_cast<std::uint8_t*>(start_), size_);
        }
    }

    [[nodiscard]] std::span<const std::uint8_t> bytes() const { return {start_, size_}; }

private:
    const std::uint8_t* start_ = nullptr;
    std::size_t size_ = 0;
};

/// A file system that knows no attributes has none to take away.
void clearOriginOf(const fs::path& path) {
    std::string names(1024, '\0');
    const ssize_t length = ::llistxattr(path.c_str(), names.data(), names.size());
    names.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    for (std::size_t start = 0; start < names.size(); start = names.find('\0', start) + 1) {
        if (std::string_view(names).substr(start).starts_with("user.xdg.")) {
            ::lremovexattr(path.c_str(), names.c_str() + start);
        }
    }
}

/// Whether the program that the app names is there, so that it can be started.
bool hasProgram(const fs::path& app, const BundleInfo& info) {
    const fs::path name = fs::path(info.executable).lexically_normal();
    std::error_code error;
    return !name.is_absolute() && name.has_filename() && *name.begin() != ".." &&
           fs::is_regular_file(app / "Contents" / name, error);
}

fs::path appIn(const fs::path& folder) {
    std::set<fs::path> apps;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".app" && entry.symlink_status().type() == fs::file_type::directory) {
            apps.insert(entry.path());
        }
    }
    if (apps.empty()) {
        throw UpdateError(UpdateMessages::noApp);
    }
    return *apps.begin();
}

} // namespace

fs::path folder(const fs::path& caches, std::string_view identifier) {
    return caches / (identifier.empty() ? "app.brevin" : identifier) / "BrevinUpdate";
}

void prepare(const fs::path& folder) {
    fs::remove_all(folder);
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms::owner_all);
}

fs::path unpack(const fs::path& zip, std::string_view signature, std::string_view publicKey) {
    const fs::path folder = zip.parent_path();
    {
        const MappedFile archive(zip);
        if (!UpdateLogic::verify(archive.bytes(), signature, publicKey)) {
            throw UpdateError(UpdateMessages::wrongSignature);
        }
        Unpacking::unpack(archive.bytes(), folder, Unpacking::Limits::forArchive(archive.bytes().size()));
    }
    fs::remove(zip);
    const fs::path app = appIn(folder);
    clearOrigin(app);
    return app;
}

void clearOrigin(const fs::path& app) {
    clearOriginOf(app);
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(app)) {
        clearOriginOf(entry.path());
    }
}

void validate(const fs::path& app, const Expected& expected) {
    const auto info = BundleInfo::read(Bundle::infoFile(app));
    if (!info || info->identifier.empty() || info->identifier != expected.identifier ||
        info->version != expected.version || !hasProgram(app, *info)) {
        throw UpdateError(UpdateMessages::wrongApp);
    }
    if (!Manifest::isIntact(app, expected.publicKey)) {
        throw UpdateError(UpdateMessages::damagedCode);
    }
}

} // namespace brevin::Staging

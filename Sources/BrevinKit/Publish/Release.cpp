#include "BrevinKit/Publish/Release.h"

#include "BrevinKit/Bundle/BundleInfo.h"
#include "BrevinKit/Bundle/Manifest.h"

#include <archive.h>
#include <archive_entry.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <set>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace brevin::Release {

namespace {

namespace fs = std::filesystem;

std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

void write(const fs::path& file, std::string_view text) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    if (!stream.write(text.data(), static_cast<std::streamsize>(text.size())).flush()) {
        throw std::runtime_error(file.string() + ": this can’t be written");
    }
}

std::ifstream opened(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error(file.string() + ": this can’t be read");
    }
    return stream;
}

struct FreeWriter {
    void operator()(archive* writer) const { archive_write_free(writer); }
};

struct FreeEntry {
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

class Packer {
public:
    explicit Packer(const fs::path& zip) : writer_(archive_write_new()) {
        if (!writer_) {
            throw std::bad_alloc();
        }
        check(archive_write_set_format_zip(writer_.get()));
        check(archive_write_set_options(writer_.get(), "hdrcharset=UTF-8"));
        check(archive_write_open_filename(writer_.get(), zip.c_str()));
    }

    void add(const fs::path& path, const fs::path& name) {
        const fs::file_status status = fs::symlink_status(path);
        // Without a time, the entry gets the earliest one that the format can hold: the same app is the same archive.
        const std::unique_ptr<archive_entry, FreeEntry> entry(archive_entry_new2(writer_.get()));
        archive_entry_set_pathname_utf8(entry.get(), name.c_str());
        archive_entry_set_perm(entry.get(), static_cast<mode_t>(status.permissions()));
        if (fs::is_symlink(status)) {
            archive_entry_set_filetype(entry.get(), AE_IFLNK);
            archive_entry_set_symlink_utf8(entry.get(), fs::read_symlink(path).c_str());
        } else if (fs::is_directory(status)) {
            archive_entry_set_filetype(entry.get(), AE_IFDIR);
        } else {
            archive_entry_set_filetype(entry.get(), AE_IFREG);
            archive_entry_set_size(entry.get(), static_cast<std::int64_t>(fs::file_size(path)));
        }
        check(archive_write_header(writer_.get(), entry.get()));
        if (fs::is_regular_file(status)) {
            addContents(path);
        }
    }

    void finish() { check(archive_write_close(writer_.get())); }

private:
    void addContents(const fs::path& path) {
        std::ifstream stream = opened(path);
        std::vector<char> bytes(chunk);
        while (stream.read(bytes.data(), chunk) || stream.gcount() > 0) {
            if (archive_write_data(writer_.get(), bytes.data(), static_cast<std::size_t>(stream.gcount())) < 0) {
                check(ARCHIVE_FATAL);
            }
        }
    }

    void check(int result) const {
        if (result != ARCHIVE_OK) {
            const char* const reason = archive_error_string(writer_.get());
            throw std::runtime_error(reason != nullptr ? reason : "the archive can’t be written");
        }
    }

    static constexpr std::streamsize chunk = 256L * 1024;

    std::unique_ptr<archive, FreeWriter> writer_;
};

} // namespace

void seal(const fs::path& bundle, const ReleaseKey& key) {
    fs::create_directories(Bundle::manifestFile(bundle).parent_path());
    const std::string list = Manifest::of(bundle);
    write(Bundle::manifestFile(bundle), list);
    write(Bundle::signatureFile(bundle), key.sign(bytesOf(list)));
}

void pack(const fs::path& bundle, const fs::path& zip) {
    const fs::path parent = bundle.parent_path();
    std::set<fs::path> paths{bundle};
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(bundle)) {
        paths.insert(entry.path());
    }
    Packer packer(zip);
    for (const fs::path& path : paths) {
        packer.add(path, path.lexically_relative(parent));
    }
    packer.finish();
}

UpdateFeed::Download describe(const fs::path& zip, std::string url, const ReleaseKey& key) {
    std::ifstream stream = opened(zip);
    const std::string bytes(std::istreambuf_iterator<char>(stream), {});
    return {.url = std::move(url),
            .length = static_cast<std::int64_t>(bytes.size()),
            .edSignature = key.sign(bytesOf(bytes))};
}

} // namespace brevin::Release

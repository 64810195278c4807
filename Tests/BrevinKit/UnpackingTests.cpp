#include "BrevinKit/Bundle/Unpacking.h"
#include "BrevinKit/TestBundle.h"
#include "VarnicCore/TemporaryFolder.h"

#include <archive.h>
#include <archive_entry.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace brevin {
namespace {

namespace fs = std::filesystem;

struct Entry {
    std::string name;
    unsigned type = AE_IFREG;
    mode_t mode = 0644;
    /// Of a file the contents, of a link the target.
    std::string contents = "x";
};

/// Makes the last entry, a file, something else, which the library does not write: by its mode in the table of
/// contents.
std::vector<std::uint8_t> withLast(std::vector<std::uint8_t> zip, unsigned type) {
    constexpr std::string_view mark = "PK\1\2";
    const auto record = std::ranges::find_end(zip, mark).begin();
    constexpr std::ptrdiff_t highByteOfMode = 41;
    record[highByteOfMode] = static_cast<std::uint8_t>((type | 0644U) >> 8U);
    return zip;
}

std::vector<std::uint8_t> zipOf(const std::vector<Entry>& entries) {
    std::vector<std::uint8_t> bytes(4UL * 1024 * 1024);
    std::size_t used = 0;
    archive* writer = archive_write_new();
    archive_write_set_format_zip(writer);
    archive_write_open_memory(writer, bytes.data(), bytes.size(), &used);
    for (const Entry& entry : entries) {
        archive_entry* header = archive_entry_new();
        archive_entry_set_pathname(header, entry.name.c_str());
        archive_entry_set_filetype(header, entry.type);
        archive_entry_set_perm(header, entry.mode);
        if (entry.type == AE_IFLNK) {
            archive_entry_set_symlink(header, entry.contents.c_str());
        } else if (entry.type == AE_IFREG) {
            archive_entry_set_size(header, static_cast<std::int64_t>(entry.contents.size()));
        }
        archive_write_header(writer, header);
        if (entry.type == AE_IFREG) {
            archive_write_data(writer, entry.contents.data(), entry.contents.size());
        }
        archive_entry_free(header);
    }
    archive_write_free(writer);
    bytes.resize(used);
    return bytes;
}

/// What was refused; empty for nothing.
std::string refusal(const std::vector<std::uint8_t>& zip, const fs::path& folder) {
    fs::remove_all(folder);
    fs::create_directories(folder);
    try {
        Unpacking::unpack(zip, folder, Unpacking::Limits::forArchive(zip.size()));
        return "";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

const Entry top{.name = "A.app/", .type = AE_IFDIR, .mode = 0755};

TEST(Unpacking, unpack_refusesWhatNoAppHolds) {
    const varnic::TemporaryFolder outside;
    const fs::path folder = outside.path() / "in";
    const std::string refused = "The archive holds what no app should hold.";
    const std::map<std::string, std::vector<Entry>> cases{
        {"an absolute name", {{.name = "/tmp/brevin-absolute"}}},
        {"a name that leads up", {top, {.name = "A.app/../../up"}}},
        {"the folder itself", {{.name = "./", .type = AE_IFDIR, .mode = 0755}}},
        {"a control character", {top, {.name = "A.app/a\nb"}}},
        {"a name twice", {top, {.name = "A.app/a"}, {.name = "A.app/a"}}},
        {"an absolute link", {top, {.name = "A.app/l", .type = AE_IFLNK, .contents = "/etc/passwd"}}},
        {"a link that leads out", {top, {.name = "A.app/l", .type = AE_IFLNK, .contents = "../up"}}},
        {"a link that leads down and out",
         {top, {.name = "A.app/d/l", .type = AE_IFLNK, .contents = "../e/../../../up"}}},
        {"a link to nothing", {top, {.name = "A.app/l", .type = AE_IFLNK, .contents = ""}}},
        {"a link beside the app", {{.name = "l", .type = AE_IFLNK, .contents = "A.app"}}},
        {"a file behind a link",
         {top, {.name = "A.app/l", .type = AE_IFLNK, .contents = "d"}, {.name = "A.app/l/file"}}},
        {"a file in a file", {top, {.name = "A.app/a"}, {.name = "A.app/a/b"}}},
        {"set-user-id", {top, {.name = "A.app/su", .mode = 04755}}},
        {"a folder that can’t be entered", {top, {.name = "A.app/d/", .type = AE_IFDIR, .mode = 0444}}},
    };
    for (const auto& [name, entries] : cases) {
        EXPECT_EQ(refusal(zipOf(entries), folder), refused) << name;
        EXPECT_FALSE(fs::exists(outside.path() / "up") || fs::exists("/tmp/brevin-absolute")) << name;
    }
}

TEST(Unpacking, unpack_refusesWhatIsNeitherFileNorFolderNorLink) {
    const varnic::TemporaryFolder folder;
    const auto zip = zipOf({top, {.name = "A.app/a"}});
    EXPECT_EQ(refusal(withLast(zip, AE_IFREG), folder.path() / "in"), "");
    for (const unsigned type : {AE_IFCHR, AE_IFBLK, AE_IFSOCK}) {
        EXPECT_EQ(refusal(withLast(zip, type), folder.path() / "in"), "The archive holds what no app should hold.")
            << type;
    }
}

TEST(Unpacking, unpack_refusesMoreThanTheSizeAllowsFor) {
    const varnic::TemporaryFolder folder;
    const std::string tooMuch = "The archive holds more than its size allows for.";
    EXPECT_EQ(refusal(zipOf({top, {.name = "A.app/bomb", .contents = std::string(3UL * 1024 * 1024, '\0')}}),
                      folder.path() / "in"),
              tooMuch);
    const auto three = zipOf({top, {.name = "A.app/a"}, {.name = "A.app/b"}});
    EXPECT_THROW(Unpacking::unpack(three, folder.path(), {.bytes = 2, .entries = 2}), std::runtime_error);
    EXPECT_THROW(Unpacking::unpack(three, folder.path() / "in", {.bytes = 1, .entries = 3}), std::runtime_error);
}

TEST(Unpacking, unpack_refusesADamagedArchiveWhereverItIsDamaged) {
    const varnic::TemporaryFolder folder;
    const std::vector<std::uint8_t> zip = zipOf({top, {.name = "A.app/a", .contents = "some words, and more of them"}});
    ASSERT_EQ(refusal(zip, folder.path() / "in"), "");
    for (const std::size_t length : {std::size_t(0), std::size_t(1), zip.size() / 2, zip.size() - 30}) {
        EXPECT_EQ(refusal({zip.begin(), zip.begin() + static_cast<std::ptrdiff_t>(length)}, folder.path() / "in"),
                  "The archive is damaged.")
            << length;
    }
    // Whatever one wrong byte leads to, it stays in its folder and ends with a sentence or a whole archive.
    for (std::size_t at = 0; at < zip.size(); ++at) {
        auto wrong = zip;
        wrong[at] ^= 0x55;
        refusal(wrong, folder.path() / "in");
        EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1) << at;
    }
}

TEST(Unpacking, anAppThatIsPackedAndUnpacked_isTheSame) {
    const varnic::TemporaryFolder folder;
    const fs::path bundle = makeBundle(folder.path() / "from/Tiny.app", "0.1.0");
    fs::permissions(bundle / "Contents/share/übung.bin", fs::perms(0604));
    const ReleaseKey key = ReleaseKey::generate();
    Release::seal(bundle, key);
    Release::pack(bundle, folder.path() / "one.zip");
    Release::pack(bundle, folder.path() / "two.zip");
    const std::string zip = readFile(folder.path() / "one.zip");
    EXPECT_EQ(zip, readFile(folder.path() / "two.zip")) << "the same app is the same archive";
    const fs::path to = folder.path() / "to";
    EXPECT_EQ(refusal({zip.begin(), zip.end()}, to), "");
    const std::string compare =
        "diff -r --no-dereference '" + bundle.string() + "' '" + (to / "Tiny.app").string() + "'";
    EXPECT_EQ(std::system(compare.c_str()), 0);
    EXPECT_EQ(fs::status(to / "Tiny.app/Contents/share/übung.bin").permissions(), fs::perms(0604));
}

} // namespace
} // namespace brevin

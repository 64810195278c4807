#include "BrevinKit/Bundle/BundleInfo.h"
#include "BrevinKit/Bundle/Manifest.h"
#include "BrevinKit/TestBundle.h"
#include "BrevinKit/UpdateError.h"
#include "VarnicCore/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <stdexcept>

#include <sys/stat.h>

namespace brevin {
namespace {

namespace fs = std::filesystem;

TEST(BundleInfo, read_takesWhatIsThere) {
    const varnic::TemporaryFolder folder;
    const fs::path file = folder.path() / "Info.plist";
    EXPECT_EQ(BundleInfo::read(file), std::nullopt);
    const BundleInfo whole{.identifier = "app.brevin.Tiny",
                           .name = "Tiny & Sons",
                           .version = "1.2",
                           .executable = "bin/tiny",
                           .feedURL = "https://example.org/feed.json?a=1&b=2",
                           .publicKey = "key"};
    writeFile(file, whole.encode());
    EXPECT_EQ(BundleInfo::read(file), whole);
    writeFile(file,
              "<?xml version=\"1.0\"?><!DOCTYPE plist PUBLIC \"a\" \"b\"><plist><dict><key>Other</key><true/>"
              "<key>CFBundleName</key><string>Tiny</string><key>CFBundleShortVersionString</key><integer>3</integer>"
              "<key>BrevinUpdateFeedURL</key></dict></plist>");
    EXPECT_EQ(BundleInfo::read(file), (BundleInfo{.identifier = "", .name = "Tiny", .version = "1.0"}));
    for (const char* other : {"", "{}", "<plist>", "<plist><array/></plist>"}) {
        writeFile(file, other);
        EXPECT_EQ(BundleInfo::read(file), std::nullopt) << other;
    }
}

TEST(Bundle, around_isTheFolderWithTheInfo) {
    const varnic::TemporaryFolder folder;
    const fs::path bundle = makeBundle(folder.path() / "Tiny.app", "0.1.0");
    EXPECT_EQ(Bundle::around(bundle / "Contents/bin/tiny"), bundle);
    EXPECT_EQ(Bundle::around(folder.path() / "Other.app/Contents/bin/tiny"), std::nullopt);
    EXPECT_EQ(Bundle::around("/usr/bin/tiny"), std::nullopt);
}

TEST(Manifest, isIntact_noticesEachChange) {
    const varnic::TemporaryFolder folder;
    const ReleaseKey key = ReleaseKey::generate();
    const fs::path bundle = folder.path() / "Tiny.app";
    const std::map<std::string, std::function<void()>> changes{
        {"a byte", [&] { writeFile(bundle / "Contents/bin/tiny", "#!/bin/sh\necho 0.1.1\n"); }},
        {"a mode", [&] { fs::permissions(bundle / "Contents/bin/tiny", fs::perms(0775)); }},
        {"a folder’s mode", [&] { fs::permissions(bundle / "Contents/bin", fs::perms(0777)); }},
        {"one more file", [&] { writeFile(bundle / "Contents/bin/more", ""); }},
        {"one more folder", [&] { fs::create_directory(bundle / "Contents/more"); }},
        {"a file in the signature’s folder", [&] { writeFile(bundle / "Contents/_CodeSignature/more", ""); }},
        {"one less", [&] { fs::remove(bundle / "Contents/share/link"); }},
        {"a target",
         [&] {
             fs::remove(bundle / "Contents/share/link");
             fs::create_symlink("empty", bundle / "Contents/share/link");
         }},
        {"a link in place of a file",
         [&] {
             fs::remove(bundle / "Contents/bin/tiny");
             fs::create_symlink("/bin/true", bundle / "Contents/bin/tiny");
         }},
        {"another list", [&] { writeFile(Bundle::manifestFile(bundle), Manifest::of(bundle) + " "); }},
        {"no list", [&] { fs::remove(Bundle::manifestFile(bundle)); }},
        {"no signature", [&] { fs::remove(Bundle::signatureFile(bundle)); }},
        {"the list a link",
         [&] {
             fs::rename(Bundle::manifestFile(bundle), folder.path() / "list");
             fs::create_symlink(folder.path() / "list", Bundle::manifestFile(bundle));
         }},
        {"another key", [&] { Release::seal(bundle, ReleaseKey::generate()); }},
    };
    for (const auto& [name, change] : changes) {
        fs::remove_all(bundle);
        Release::seal(makeBundle(bundle, "0.1.0"), key);
        ASSERT_TRUE(Manifest::isIntact(bundle, key.publicKey()));
        change();
        EXPECT_FALSE(Manifest::isIntact(bundle, key.publicKey())) << name;
    }
    ASSERT_EQ(::mkfifo((bundle / "Contents/pipe").c_str(), 0600), 0);
    EXPECT_THROW(Manifest::isIntact(bundle, key.publicKey()) || (Release::seal(bundle, key), true), UpdateError);
    fs::remove(bundle / "Contents/pipe");
    writeFile(bundle / "Contents/a\tb", "");
    EXPECT_THROW(Release::seal(bundle, key), UpdateError);
}

TEST(ReleaseKey, load_isWhatWasSaved) {
    const varnic::TemporaryFolder folder;
    const fs::path file = folder.path() / "secret.key";
    const ReleaseKey key = ReleaseKey::generate();
    key.save(file);
    EXPECT_EQ(ReleaseKey::load(file).publicKey(), key.publicKey());
    EXPECT_NE(ReleaseKey::generate().publicKey(), key.publicKey());
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0600));
    EXPECT_THROW(key.save(file), std::runtime_error) << "a key is never written over";
    fs::permissions(file, fs::perms(0640));
    EXPECT_THROW(ReleaseKey::load(file), std::runtime_error) << "others may read it";
    EXPECT_THROW(ReleaseKey::load(folder.path() / "none"), std::runtime_error);
    writeFile(folder.path() / "short", "AAAA\n");
    fs::permissions(folder.path() / "short", fs::perms(0600));
    EXPECT_THROW(ReleaseKey::load(folder.path() / "short"), std::runtime_error);
}

} // namespace
} // namespace brevin

// brevin-publish: makes releases of a bundle, for packaging/make-update. Secret keys are read from files only, since
// everybody sees the arguments of a command.
//
//   brevin-publish new-key KEY                        writes a new secret key, prints its public one
//   brevin-publish release KEY VERSION FEED_URL ARCHIVE_URL PAGE_URL NOTES BUNDLE OUT
//
// The latter completes the bundle (which holds Contents/Info.plist without version, feed and key), seals it, and writes
// OUT/NAME-VERSION.zip and OUT/feed.json. The archive's URL is that of its folder. NOTES is a file of plain text; empty
// for none. What is made runs where the C library is at least that of this computer, and the feed says so.

#include "BrevinKit/Bundle/BundleInfo.h"
#include "BrevinKit/Publish/Release.h"
#include "BrevinKit/Publish/ReleaseKey.h"
#include "BrevinKit/UpdateLogic.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <gnu/libc-version.h>

namespace {

namespace fs = std::filesystem;
using namespace brevin;

void write(const fs::path& file, const std::string& text) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    if (!(stream << text).flush()) {
        throw std::runtime_error(file.string() + " can’t be written.");
    }
}

std::string read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error(file.string() + " can’t be read.");
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

void makeKey(const fs::path& file) {
    const ReleaseKey key = ReleaseKey::generate();
    key.save(file);
    std::printf("%s\n", key.publicKey().c_str());
}

void release(const std::vector<std::string>& words) {
    const ReleaseKey key = ReleaseKey::load(words[0]);
    const std::string& version = words[1];
    const fs::path bundle = fs::path(words[6]).lexically_normal();
    const fs::path out = words[7];
    if (!UpdateLogic::isVersion(version)) {
        throw std::runtime_error(version + " is no version.");
    }
    auto info = BundleInfo::read(Bundle::infoFile(bundle));
    if (!info) {
        throw std::runtime_error(bundle.string() + " holds no Contents/Info.plist.");
    }
    info->version = version;
    info->feedURL = words[2];
    info->publicKey = key.publicKey();
    write(Bundle::infoFile(bundle), info->encode());
    Release::seal(bundle, key);

    const std::string name = info->name + "-" + version + ".zip";
    Release::pack(bundle, out / name);
    UpdateFeed feed{.version = version,
                    .url = words[4],
                    .notes = {},
                    .minimumSystemVersion = gnu_get_libc_version(),
                    .download = Release::describe(out / name, words[3] + "/" + name, key)};
    if (!words[5].empty()) {
        feed.notes = read(words[5]);
    }
    write(out / "feed.json", feed.encode());
    std::printf("%s\n%s\n", (out / name).c_str(), (out / "feed.json").c_str());
}

int run(const std::vector<std::string>& words) {
    constexpr std::size_t releaseWords = 9;
    if (words.size() == 2 && words[0] == "new-key") {
        makeKey(words[1]);
    } else if (words.size() == releaseWords && words[0] == "release") {
        release({words.begin() + 1, words.end()});
    } else {
        std::fputs("usage: see packaging/make-update\n", stderr);
        return 2;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "brevin-publish: %s\n", error.what());
        return 1;
    }
}

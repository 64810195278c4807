#pragma once

#include "BrevinKit/Bundle/BundleInfo.h"
#include "BrevinKit/Publish/Release.h"
#include "BrevinKit/Publish/ReleaseKey.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace brevin {

inline void writeFile(const std::filesystem::path& file, std::string_view contents) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << contents;
}

inline std::string readFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A small app whose program prints its version, not sealed yet.
inline std::filesystem::path makeBundle(const std::filesystem::path& bundle, const std::string& version,
                                        const std::string& identifier = "app.brevin.Tiny") {
    namespace fs = std::filesystem;
    const BundleInfo info{.identifier = identifier,
                          .name = "Tiny",
                          .version = version,
                          .executable = "bin/tiny",
                          .feedURL = {},
                          .publicKey = {}};
    writeFile(Bundle::infoFile(bundle), info.encode());
    writeFile(bundle / "Contents/bin/tiny", "#!/bin/sh\necho " + version + "\n");
    fs::permissions(bundle / "Contents/bin/tiny", fs::perms(0755));
    // Of a size that doesn’t shrink.
    std::string noise;
    for (unsigned number = 1; noise.size() < 600'000; number = number * 1664525 + 1013904223) {
        noise += static_cast<char>(number >> 24);
    }
    writeFile(bundle / "Contents/share/übung.bin", noise);
    fs::create_symlink("übung.bin", bundle / "Contents/share/link");
    fs::create_directories(bundle / "Contents/share/empty");
    return bundle;
}

} // namespace brevin

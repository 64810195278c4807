#include "BrevinKit/Bundle/Manifest.h"

#include "BrevinKit/Bundle/BundleInfo.h"
#include "BrevinKit/UpdateError.h"
#include "BrevinKit/UpdateLogic.h"

#include <fmt/format.h>
#include <sodium.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>

namespace brevin::Manifest {

namespace {

namespace fs = std::filesystem;

/// Bytes. No list of a bundle is longer.
constexpr std::uintmax_t longest = 64UL * 1024UL * 1024UL;

std::ifstream opened(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("A file of the app can’t be read.");
    }
    return stream;
}

std::string hashOf(const fs::path& file) {
    constexpr std::size_t chunk = 256UL * 1024;
    std::ifstream stream = opened(file);
    std::string bytes(chunk, '\0');
    crypto_hash_sha256_state state;
    crypto_hash_sha256_init(&state);
    while (stream.read(bytes.data(), chunk) || stream.gcount() > 0) {
        crypto_hash_sha256_update(&state, reinterpret_cast<const unsigned char*>(bytes.data()),
                                  static_cast<unsigned long long>(stream.gcount()));
    }
    if (stream.bad()) {
        throw std::runtime_error("A file of the app can’t be read.");
    }
    std::array<unsigned char, crypto_hash_sha256_BYTES> hash{};
    crypto_hash_sha256_final(&state, hash.data());
    std::array<char, 2 * crypto_hash_sha256_BYTES + 1> text{};
    return sodium_bin2hex(text.data(), text.size(), hash.data(), hash.size());
}

/// A name that keeps to its field of a line.
std::string plain(const fs::path& name) {
    if (std::ranges::any_of(name.native(), [](char c) { return static_cast<unsigned char>(c) < ' '; })) {
        throw UpdateError(UpdateMessages::damagedCode);
    }
    return name.native();
}

/// The line without the path at its end.
std::string described(const fs::directory_entry& entry) {
    const fs::file_status status = entry.symlink_status();
    const auto mode = static_cast<unsigned>(status.permissions());
    switch (status.type()) {
    case fs::file_type::regular:
        return fmt::format("file\t{:04o}\t{}", mode, hashOf(entry.path()));
    case fs::file_type::directory:
        return fmt::format("folder\t{:04o}", mode);
    case fs::file_type::symlink:
        return fmt::format("link\t{}", plain(fs::read_symlink(entry.path())));
    default:
        throw UpdateError(UpdateMessages::damagedCode);
    }
}

std::optional<std::string> contentsOf(const fs::path& file) {
    std::error_code error;
    if (fs::symlink_status(file, error).type() != fs::file_type::regular || fs::file_size(file, error) > longest) {
        return std::nullopt;
    }
    std::ifstream stream = opened(file);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

} // namespace

std::string of(const fs::path& bundle) {
    std::map<std::string, std::string> lines;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(bundle)) {
        if (entry.path() != Bundle::manifestFile(bundle) && entry.path() != Bundle::signatureFile(bundle)) {
            lines.emplace(plain(entry.path().lexically_relative(bundle)), described(entry));
        }
    }
    std::string text = "brevin-manifest\t1\n";
    for (const auto& [path, description] : lines) {
        fmt::format_to(std::back_inserter(text), "{}\t{}\n", description, path);
    }
    return text;
}

bool isIntact(const fs::path& bundle, std::string_view publicKey) {
    const auto list = contentsOf(Bundle::manifestFile(bundle));
    const auto signature = contentsOf(Bundle::signatureFile(bundle));
    if (!list || !signature) {
        return false;
    }
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(list->data()), list->size());
    return UpdateLogic::verify(bytes, *signature, publicKey) && *list == of(bundle);
}

} // namespace brevin::Manifest

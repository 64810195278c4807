#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace brevin {

/// The secret key that a publisher signs releases with (Ed25519). Wiped from memory with the object. One thread.
class ReleaseKey {
public:
    /// A new one.
    static ReleaseKey generate();

    /// From a file that `save` has written. Throws std::runtime_error where it holds no key, and where others than its
    /// owner may read it.
    static ReleaseKey load(const std::filesystem::path& file);

    ReleaseKey(const ReleaseKey&) = default;
    ReleaseKey& operator=(const ReleaseKey&) = default;
    ~ReleaseKey();

    /// Writes a new file for its owner alone. Throws std::runtime_error, also where there is one already.
    void save(const std::filesystem::path& file) const;

    /// Base64, as a bundle's Info.plist has it.
    [[nodiscard]] std::string publicKey() const;

    /// Base64 of the signature over the bytes.
    [[nodiscard]] std::string sign(std::span<const std::uint8_t> bytes) const;

private:
    static constexpr std::size_t seedSize = 32;
    static constexpr std::size_t secretSize = 64;

    explicit ReleaseKey(const std::array<std::uint8_t, seedSize>& seed);

    /// The seed and, behind it, the public key.
    std::array<std::uint8_t, secretSize> secret_{};
};

} // namespace brevin

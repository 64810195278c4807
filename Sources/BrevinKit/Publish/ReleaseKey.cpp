#include "BrevinKit/Publish/ReleaseKey.h"

#include "BrevinKit/Bundle/OpenFile.h"

#include <sodium.h>

#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevin {

namespace {

namespace fs = std::filesystem;

std::string base64(std::span<const std::uint8_t> bytes) {
    std::string text(sodium_base64_encoded_len(bytes.size(), sodium_base64_VARIANT_ORIGINAL), '\0');
    sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), sodium_base64_VARIANT_ORIGINAL);
    text.pop_back(); // The final zero.
    return text;
}

} // namespace

ReleaseKey::ReleaseKey(const std::array<std::uint8_t, seedSize>& seed) {
    static_assert(seedSize == crypto_sign_SEEDBYTES && secretSize == crypto_sign_SECRETKEYBYTES);
    std::array<std::uint8_t, crypto_sign_PUBLICKEYBYTES> publicKey{};
    crypto_sign_seed_keypair(publicKey.data(), secret_.data(), seed.data());
}

ReleaseKey::~ReleaseKey() {
    sodium_memzero(secret_.data(), secret_.size());
}

ReleaseKey ReleaseKey::generate() {
    if (sodium_init() < 0) {
        throw std::runtime_error("The system gives no random numbers.");
    }
    std::array<std::uint8_t, seedSize> seed{};
    randombytes_buf(seed.data(), seed.size());
    ReleaseKey key(seed);
    sodium_memzero(seed.data(), seed.size());
    return key;
}

ReleaseKey ReleaseKey::load(const fs::path& file) {
    const OpenFile opened(file, O_RDONLY);
    struct stat status{};
    if (::fstat(opened.number(), &status) != 0) {
        throwErrno();
    }
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        throw std::runtime_error("Others may read this secret key; chmod 600 it.");
    }
    std::array<char, 64> text{};
    const ssize_t count = ::read(opened.number(), text.data(), text.size());
    std::array<std::uint8_t, seedSize> seed{};
    std::size_t length = 0;
    if (count < 0 ||
        sodium_base642bin(seed.data(), seed.size(), text.data(), static_cast<std::size_t>(count), "\n", &length,
                          nullptr, sodium_base64_VARIANT_ORIGINAL) != 0 ||
        length != seed.size()) {
        throw std::runtime_error("This file holds no secret key.");
    }
    ReleaseKey key(seed);
    sodium_memzero(seed.data(), seed.size());
    sodium_memzero(text.data(), text.size());
    return key;
}

void ReleaseKey::save(const fs::path& file) const {
    const OpenFile opened(file, O_WRONLY | O_CREAT | O_EXCL);
    std::string text = base64(std::span(secret_).first(seedSize)) + "\n";
    opened.write(text);
    sodium_memzero(text.data(), text.size());
    if (::fsync(opened.number()) != 0) {
        throwErrno();
    }
}

std::string ReleaseKey::publicKey() const {
    return base64(std::span(secret_).subspan(seedSize));
}

std::string ReleaseKey::sign(std::span<const std::uint8_t> bytes) const {
    std::array<std::uint8_t, crypto_sign_BYTES> signature{};
    crypto_sign_detached(signature.data(), nullptr, bytes.data(), bytes.size(), secret_.data());
    return base64(signature);
}

} // namespace brevin

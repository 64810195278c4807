#include "BrevinKit/UpdateLogic.h"

#include <gtest/gtest.h>
#include <sodium.h>

#include <array>
#include <string>
#include <vector>

namespace brevin {
namespace {

struct Versions {
    std::string candidate;
    std::string current;
    bool newer;
};

TEST(UpdateLogic, isNewer_comparesNumbersByValue) {
    const std::vector<Versions> versions{
        {"1.10", "1.9", true},
        {"1.9", "1.10", false},
        {"2.0", "2.0", false},
        {"1.01", "1.1", false},
        {"1.1", "1.01", false},
        {"1.0.1", "1.0", true},
        {"1.0", "1.0.0", false},
        {"10", "9.9.9", true},
        {"1.0b2", "1.0b1", true},
        {"1.0b1", "1.0", true},
        {"1.99999999999999999999999999999", "1.99999999999999999999999999998", true},
        {"0000000000000000000000000000002", "1", true},
        {"", "1", false},
        {"1", "", true},
        {"é", "z", true},
    };
    for (const auto& [candidate, current, newer] : versions) {
        EXPECT_EQ(UpdateLogic::isNewer(candidate, current), newer) << candidate << " against " << current;
    }
}

struct Minimum {
    std::optional<std::string> minimum;
    SystemVersion system;
    bool supported;
};

TEST(UpdateLogic, systemSupports_comparesInOrder) {
    const std::vector<Minimum> minimums{
        {std::nullopt, {0, 0, 0}, true}, {"", {0, 0, 0}, true},         {"14", {14, 5, 0}, true},
        {"15.1", {15, 0, 0}, false},     {"15.1", {15, 1, 0}, true},    {"15.0.1", {15, 0, 0}, false},
        {"15.0.1", {15, 0, 2}, true},    {"14.9.9", {15, 0, 0}, true},  {"14.5.1.9", {14, 5, 1}, true},
        {"soon", {0, 0, 0}, true},       {"14.x.9", {14, 0, 8}, false}, {"14..1", {14, 0, 0}, false},
        {"14 .1", {0, 1, 0}, true},      {"...", {0, 0, 0}, true},      {"99999999999999999999", {1, 0, 0}, true},
    };
    for (const auto& [minimum, system, supported] : minimums) {
        EXPECT_EQ(UpdateLogic::systemSupports(minimum, system), supported) << minimum.value_or("none");
    }
}

std::string base64(const std::vector<std::uint8_t>& bytes, int variant = sodium_base64_VARIANT_ORIGINAL) {
    std::string text(sodium_base64_encoded_len(bytes.size(), variant), '\0');
    sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), variant);
    text.pop_back(); // the terminating zero
    return text;
}

std::vector<std::uint8_t> bytesOf(const std::string& hex) {
    std::vector<std::uint8_t> bytes(hex.size() / 2);
    sodium_hex2bin(bytes.data(), bytes.size(), hex.data(), hex.size(), nullptr, nullptr, nullptr);
    return bytes;
}

/// Data with a signature by a fresh key.
class UpdateSignature : public testing::Test {
protected:
    UpdateSignature() {
        std::array<std::uint8_t, crypto_sign_SECRETKEYBYTES> secret{};
        crypto_sign_keypair(publicKey.data(), secret.data());
        crypto_sign_detached(signature.data(), nullptr, data.data(), data.size(), secret.data());
    }

    std::vector<std::uint8_t> data = std::vector<std::uint8_t>(100'000, 0x5A);
    std::vector<std::uint8_t> publicKey = std::vector<std::uint8_t>(crypto_sign_PUBLICKEYBYTES);
    std::vector<std::uint8_t> signature = std::vector<std::uint8_t>(crypto_sign_BYTES);
};

TEST_F(UpdateSignature, verify_onlyTheSignedBytesUnderTheirKey) {
    EXPECT_TRUE(UpdateLogic::verify(data, base64(signature), base64(publicKey)));
    auto changed = data;
    changed.back() ^= 1;
    EXPECT_FALSE(UpdateLogic::verify(changed, base64(signature), base64(publicKey)));
    EXPECT_FALSE(UpdateLogic::verify({}, base64(signature), base64(publicKey)));
    auto forged = signature;
    forged.front() ^= 1;
    EXPECT_FALSE(UpdateLogic::verify(data, base64(forged), base64(publicKey)));
    auto otherKey = publicKey;
    otherKey.front() ^= 1;
    EXPECT_FALSE(UpdateLogic::verify(data, base64(signature), base64(otherKey)));
    EXPECT_FALSE(UpdateLogic::verify(data, base64(signature), base64(std::vector<std::uint8_t>(32))));
}

TEST_F(UpdateSignature, verify_malformedOrLooseBase64_isFalse) {
    const std::string good = base64(signature);
    const std::string key = base64(publicKey);
    auto longer = signature;
    longer.push_back(0);
    const auto shorter = std::vector<std::uint8_t>(signature.begin(), signature.end() - 1);
    // 64 bytes leave four unused bits in front of "==": set ones are no canonical form.
    std::string unusedBits = good;
    ++unusedBits[unusedBits.size() - 3];
    for (const std::string& text :
         {std::string(), std::string("not base64!"), good + "\n", " " + good, good.substr(0, 86), good + "====",
          good.substr(0, 40) + "\n" + good.substr(40), good + std::string(1, '\0'), unusedBits, base64(longer),
          base64(shorter), base64(signature, sodium_base64_VARIANT_ORIGINAL_NO_PADDING), std::string(1'000'000, 'A')}) {
        EXPECT_FALSE(UpdateLogic::verify(data, text, key)) << text.substr(0, 120);
    }
    for (const std::string& text : {std::string(), key + " ", key.substr(0, 40), base64(signature)}) {
        EXPECT_FALSE(UpdateLogic::verify(data, good, text)) << text;
    }
}

TEST(UpdateLogic, verify_vectorOfRfc8032) {
    // Section 7.1, test 3.
    const auto key = bytesOf("fc51cd8e6218a1a38da47ed00230f0580816ed13ba3303ac5deb911548908025");
    const auto signature = bytesOf("6291d657deec24024827e69c3abe01a30ce548a284743a445e3680d7db5ac3ac"
                                   "18ff9b538d16f290ae67f760984dc6594a7c15e9716ed28dc027beceea1ec40a");
    EXPECT_TRUE(UpdateLogic::verify(bytesOf("af82"), base64(signature), base64(key)));
    EXPECT_FALSE(UpdateLogic::verify(bytesOf("af83"), base64(signature), base64(key)));
}

} // namespace
} // namespace brevin

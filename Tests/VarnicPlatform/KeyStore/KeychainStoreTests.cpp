#include "VarnicPlatform/KeyStore/KeychainStore.h"

#include <gtest/gtest.h>
#include <libsecret/secret.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

/// What a write says that fails; empty for one that succeeds.
std::string failureOfWriting(KeychainStore& store, const std::optional<std::string>& key) {
    try {
        store.setKey(key, "anthropic");
        return "";
    } catch (const KeyStoreError& error) {
        return error.what();
    }
}

void lockTheRing() {
    GError* error = nullptr;
    SecretService* service = secret_service_get_sync(SECRET_SERVICE_LOAD_COLLECTIONS, nullptr, &error);
    ASSERT_NE(service, nullptr) << error->message;
    GList* collections = secret_service_get_collections(service);
    EXPECT_GT(secret_service_lock_sync(service, collections, nullptr, nullptr, &error), 0);
    g_list_free_full(collections, g_object_unref);
    g_object_unref(service);
}

TEST(UnlockedKeyRing, setKey_replacesReadsBackAndRemoves) {
    KeychainStore store("app.brevin.varnic.test");
    EXPECT_EQ(store.key("anthropic"), std::nullopt);
    for (const std::string key : {"first", "sk-ant-second", "with spaces, ü and “quotes”"}) {
        store.setKey(key, "anthropic");
        EXPECT_EQ(store.key("anthropic"), key);
        EXPECT_EQ(KeychainStore("app.brevin.varnic.test").key("anthropic"), key);
    }
    const std::string lengthy(100'000, 'k');
    store.setKey(lengthy, "openAICompatible");
    EXPECT_EQ(store.key("openAICompatible"), lengthy);
    EXPECT_EQ(KeychainStore("app.brevin.varnic.other").key("anthropic"), std::nullopt);

    store.setKey("", "anthropic");
    EXPECT_EQ(store.key("anthropic"), std::nullopt);
    store.setKey(std::nullopt, "openAICompatible");
    EXPECT_EQ(store.key("openAICompatible"), std::nullopt);
    store.setKey(std::nullopt, "openAICompatible");
}

TEST(LockedKeyRing, key_isNothingAndWritingSaysWhy) {
    KeychainStore store("app.brevin.varnic.test");
    store.setKey("sk-old", "anthropic");
    ASSERT_NO_FATAL_FAILURE(lockTheRing());
    EXPECT_EQ(store.key("anthropic"), std::nullopt);
    const std::string failure = failureOfWriting(store, "sk-new");
    EXPECT_TRUE(failure.starts_with("The key couldn’t be saved in the keychain: ")) << failure;
    EXPECT_EQ(failure.find("sk-new"), std::string::npos) << failure;
}

TEST(AbsentKeyRing, key_isNothingAndWritingSaysWhy) {
    KeychainStore store;
    EXPECT_EQ(store.key("anthropic"), std::nullopt);
    EXPECT_EQ(failureOfWriting(store, std::nullopt), "");
    const std::string failure = failureOfWriting(store, "sk-new");
    EXPECT_TRUE(failure.starts_with("The key couldn’t be saved in the keychain: ")) << failure;
    EXPECT_EQ(failure.find("sk-new"), std::string::npos) << failure;
}

} // namespace
} // namespace varnic

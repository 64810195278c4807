#include "VarnicPlatform/KeyStore/KeychainStore.h"

#include <gtest/gtest.h>
#include <libsecret/secret.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

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

/// What removing the key says that fails; empty where one was removed, "none" where there was none.
std::string failureOfRemoving(KeychainStore& store) {
    try {
        return store.remove("anthropic") ? "" : "none";
    } catch (const KeyStoreError& error) {
        return error.what();
    }
}

/// Whether a process that does this and then crashes leaves a core dump.
bool isDumpedAfter(void (*work)()) {
    const pid_t child = ::fork();
    if (child == 0) {
        rlimit limit{};
        ::getrlimit(RLIMIT_CORE, &limit);
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_CORE, &limit);
        ::chdir(std::filesystem::temp_directory_path().c_str());
        work();
        std::abort();
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    std::filesystem::remove(std::filesystem::temp_directory_path() / "core");
    std::filesystem::remove(std::filesystem::temp_directory_path() / ("core." + std::to_string(child)));
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT);
    return WCOREDUMP(status);
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

TEST(UnlockedKeyRing, remove_tellsWhetherThereWasAKey) {
    KeychainStore store("app.brevin.varnic.test");
    EXPECT_EQ(failureOfRemoving(store), "none");
    store.setKey("sk-old", "anthropic");
    EXPECT_FALSE(store.isLocked("anthropic"));
    EXPECT_EQ(failureOfRemoving(store), "");
    EXPECT_EQ(store.key("anthropic"), std::nullopt);
}

/// All in processes of their own: a child can't go on with a connection of its parent's to the ring.
TEST(CrashingKeyRing, key_isInNoCoreDump) {
    const auto set = [] { KeychainStore("app.brevin.varnic.test").setKey("sk-secret", "anthropic"); };
    const auto read = [] { EXPECT_TRUE(KeychainStore("app.brevin.varnic.test").key("anthropic")); };
    if (!isDumpedAfter([] {})) {
        GTEST_SKIP() << "this system makes no core dumps";
    }
    EXPECT_FALSE(isDumpedAfter(set));
    EXPECT_FALSE(isDumpedAfter(read));
    EXPECT_TRUE(isDumpedAfter([] { EXPECT_FALSE(KeychainStore("app.brevin.varnic.test").key("openAICompatible")); }))
        << "no key, no secret";
}

TEST(LockedKeyRing, key_isNothingAndWritingSaysWhy) {
    KeychainStore store("app.brevin.varnic.test");
    store.setKey("sk-old", "anthropic");
    ASSERT_NO_FATAL_FAILURE(lockTheRing());
    EXPECT_EQ(store.key("anthropic"), std::nullopt);
    EXPECT_TRUE(store.isLocked("anthropic"));
    EXPECT_FALSE(store.isLocked("openAICompatible"));
    EXPECT_EQ(failureOfRemoving(store), "The keychain is locked, so nothing was removed.");
    const std::string failure = failureOfWriting(store, "sk-new");
    EXPECT_TRUE(failure.starts_with("The key couldn’t be saved in the keychain: ")) << failure;
    EXPECT_EQ(failure.find("sk-new"), std::string::npos) << failure;
}

TEST(AbsentKeyRing, key_isNothingAndWritingSaysWhy) {
    KeychainStore store;
    EXPECT_EQ(store.key("anthropic"), std::nullopt);
    EXPECT_FALSE(store.isLocked("anthropic"));
    EXPECT_EQ(failureOfRemoving(store), "No key ring is running, so nothing was removed.");
    EXPECT_EQ(failureOfWriting(store, std::nullopt), "");
    const std::string failure = failureOfWriting(store, "sk-new");
    EXPECT_TRUE(failure.starts_with("The key couldn’t be saved in the keychain: ")) << failure;
    EXPECT_EQ(failure.find("sk-new"), std::string::npos) << failure;
}

} // namespace
} // namespace varnic

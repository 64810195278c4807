#include "VarnicPlatform/KeyStore/KeychainStore.h"

#include <gtest/gtest.h>
#include <libsecret/secret.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stop_token>
#include <string>
#include <thread>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace varnic {
namespace {

using namespace std::chrono_literals;

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

/// The process that keeps the keys of this session.
pid_t processOfTheRing() {
    GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    GVariant* answer = g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetConnectionUnixProcessID",
        g_variant_new("(s)", "org.freedesktop.secrets"), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    guint32 process = 0;
    g_variant_get(answer, "(u)", &process);
    g_variant_unref(answer);
    g_object_unref(bus);
    return static_cast<pid_t>(process);
}

/// Lets the ring take calls and answer none, as one does that waits for something itself.
class HeldRing {
public:
    HeldRing() { ::kill(process_, SIGSTOP); }

    HeldRing(const HeldRing&) = delete;
    HeldRing& operator=(const HeldRing&) = delete;

    ~HeldRing() { ::kill(process_, SIGCONT); }

private:
    pid_t process_ = processOfTheRing();
};

KeyState stateOfWriting(KeychainStore& store, const std::optional<std::string>& key, const std::stop_token& stop = {}) {
    try {
        store.setKey(key, "anthropic", stop);
        return KeyState::found;
    } catch (const KeyStoreError& error) {
        return error.state();
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
    const KeyReading reading = store.read("anthropic");
    EXPECT_EQ(reading.state, KeyState::locked) << "and the old key is still there";
    EXPECT_EQ(reading.problem, KeyStore::lockedSentence);
}

TEST(HungKeyRing, everyCall_endsAndSaysWhy) {
    KeychainStore("app.brevin.varnic.test").setKey("sk-old", "anthropic");
    KeychainStore store("app.brevin.varnic.test", {.answer = 200ms, .user = 200ms});
    {
        const HeldRing held;
        const KeyReading reading = store.read("anthropic");
        EXPECT_EQ(reading.state, KeyState::unanswered);
        EXPECT_EQ(reading.problem, "The key can’t be read: The key ring doesn’t answer.");
        EXPECT_EQ(stateOfWriting(store, "sk-new"), KeyState::unanswered);
        EXPECT_EQ(failureOfRemoving(store), "The key ring doesn’t answer, so nothing was removed.");
    }
    EXPECT_EQ(KeychainStore("app.brevin.varnic.test").key("anthropic"), "sk-old");
}

TEST(HungKeyRing, aCallThatNobodyWaitsFor_ends) {
    // Longer than any test may take.
    KeychainStore store("app.brevin.varnic.test", {.answer = 1h, .user = 1h});
    const HeldRing held;
    std::stop_source stop;
    std::jthread other([&stop] { stop.request_stop(); });
    EXPECT_EQ(store.read("anthropic", stop.get_token()).state, KeyState::unanswered);
    EXPECT_EQ(stateOfWriting(store, "sk-new", stop.get_token()), KeyState::unanswered);
}

TEST(AbsentKeyRing, key_isNothingAndWritingSaysWhy) {
    KeychainStore store;
    EXPECT_EQ(store.key("anthropic"), std::nullopt);
    EXPECT_EQ(store.read("anthropic").state, KeyState::noKeyRing);
    EXPECT_EQ(store.read("anthropic").problem, "The key can’t be read: No key ring is running.");
    EXPECT_FALSE(store.isLocked("anthropic"));
    EXPECT_EQ(failureOfRemoving(store), "No key ring is running, so nothing was removed.");
    EXPECT_EQ(failureOfWriting(store, std::nullopt), "");
    const std::string failure = failureOfWriting(store, "sk-new");
    EXPECT_TRUE(failure.starts_with("The key couldn’t be saved in the keychain: ")) << failure;
    EXPECT_EQ(failure.find("sk-new"), std::string::npos) << failure;
}

} // namespace
} // namespace varnic

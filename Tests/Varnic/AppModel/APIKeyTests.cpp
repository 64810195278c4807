#include "Varnic/AppModel/ScratchModel.h"
#include "VarnicCore/AISummariser/KeyStore.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>

namespace varnic {
namespace {

/// Keys in a place that answers when the test lets it, and then as the test says.
class HeldKeys final : public KeyStore {
public:
    std::atomic<bool> isHeld = true;
    KeyReading answer;
    std::string failure;

    void release() {
        isHeld = false;
        isHeld.notify_all();
    }

private:
    [[nodiscard]] KeyReading readNow(const std::string& account, const std::stop_token& stop) const override {
        const std::stop_callback given(stop, [this] { const_cast<HeldKeys*>(this)->release(); });
        isHeld.wait(true);
        return account == "anthropic" ? answer : KeyReading();
    }

    void setNow(const std::optional<std::string>& key, const std::string& account,
                const std::stop_token& stop) override {
        static_cast<void>(readNow(account, stop));
        if (!failure.empty()) {
            throw KeyStoreError(failure);
        }
        answer = key ? KeyReading::found(*key) : KeyReading();
    }
};

class APIKeyTest : public testing::Test {
protected:
    APIKeyTest() { model->keys = keys; }

    void TearDown() override { keys->release(); }

    [[nodiscard]] APIKey::Status status() { return model->apiKey.status.value(); }

    std::shared_ptr<HeldKeys> keys = std::make_shared<HeldKeys>();
    ScratchModel model;
};

TEST_F(APIKeyTest, read_whileTheRingHangs_leavesTheMainThreadAlone) {
    EXPECT_EQ(status(), APIKey::Status());
    keys->answer = KeyReading::found("sk-one");
    auto reading = model->apiKey.read();
    EXPECT_EQ(status(), (APIKey::Status{.state = std::nullopt, .problem = "", .isBusy = true}));
    keys->release();
    EXPECT_EQ(QCoro::waitFor(reading).key, "sk-one");
    EXPECT_EQ(status(), (APIKey::Status{.state = KeyState::found, .problem = "", .isBusy = false}));
    EXPECT_TRUE(model->hasKey());
}

TEST_F(APIKeyTest, otherProvider_isLookedForAnew) {
    keys->answer = KeyReading::found("sk-one");
    keys->release();
    QCoro::waitFor(model->apiKey.read());
    model->settings.ai = AISettings{.provider = AIProviderKind::openAICompatible};
    EXPECT_EQ(status().state, std::nullopt);
    ASSERT_TRUE(waitUntil([this] { return status().state.has_value(); }));
    EXPECT_EQ(status().state, KeyState::none);
    // An answer about the provider that was is none about the one that is.
    keys->isHeld = true;
    auto late = model->apiKey.read();
    model->settings.ai = AISettings();
    keys->release();
    QCoro::waitFor(late);
    ASSERT_TRUE(waitUntil([this] { return !status().isBusy; }));
    EXPECT_EQ(status().state, KeyState::found);
}

TEST_F(APIKeyTest, failures_areTold) {
    keys->answer = {.state = KeyState::noKeyRing, .key = std::nullopt, .problem = "None runs."};
    keys->failure = "It stays.";
    keys->release();
    EXPECT_EQ(QCoro::waitFor(model->apiKey.save("sk-one")), "It stays.");
    EXPECT_EQ(status(), (APIKey::Status{.state = KeyState::noKeyRing, .problem = "None runs.", .isBusy = false}));
    EXPECT_EQ(QCoro::waitFor(model->apiKey.remove()), "It stays.");
    keys->failure.clear();
    EXPECT_EQ(QCoro::waitFor(model->apiKey.save(" \n sk-two\t\r\n")), std::nullopt);
    EXPECT_EQ(keys->key("anthropic"), "sk-two");
    EXPECT_EQ(status().state, KeyState::found);
    EXPECT_EQ(QCoro::waitFor(model->apiKey.remove()), std::nullopt);
    EXPECT_EQ(status().state, KeyState::none);
}

TEST_F(APIKeyTest, save_whatIsNoKey_isRefused) {
    keys->release();
    for (const std::string& text : {std::string("sk-one\nsk-two"), std::string(10UL << 20U, 'k'), std::string(" \n"),
                                    std::string("schlüssel"), std::string("sk\0x", 4)}) {
        EXPECT_TRUE(QCoro::waitFor(model->apiKey.save(text))) << text.substr(0, 20);
        EXPECT_EQ(keys->key("anthropic"), std::nullopt);
    }
}

TEST_F(APIKeyTest, request_thatMayDoWithoutAKey_doesNotWaitForAHungRing) {
    model->settings.ai = AISettings{.provider = AIProviderKind::openAICompatible};
    ASSERT_FALSE(model->settings.ai.value().needsKey());
    keys->answer = KeyReading::found("not of this provider");
    EXPECT_EQ(QCoro::waitFor(model->apiKey.readForRequest()).key, std::nullopt);
    EXPECT_FALSE(keys->isHeld) << "given up";
}

TEST_F(APIKeyTest, end_whileTheRingHangs_doesNotWaitForIt) {
    auto reading = model->apiKey.read();
    model.restart();
    EXPECT_FALSE(keys->isHeld) << "released by the end of the model";
}

} // namespace
} // namespace varnic

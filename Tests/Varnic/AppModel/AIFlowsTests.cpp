#include "Varnic/AppModel/CallFlows.h"
#include "VarnicCore/AISummariser/HTTPTransport.h"
#include "VarnicCore/AISummariser/KeyStore.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <atomic>
#include <string>
#include <utility>

namespace varnic {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A server whose answers the test gives.
class ScriptedTransport final : public HTTPTransport {
public:
    HTTPResponse answer{.status = 200, .body = ""};
    mutable std::atomic<int> requests = 0;
    std::atomic<bool> isSilent = false;

    /// What the last request said of a key.
    [[nodiscard]] std::string key() const {
        const auto found =
            std::ranges::find(last.headers, "Authorization", &std::pair<std::string, std::string>::first);
        return found == last.headers.end() ? "" : found->second;
    }

    mutable http::Request last;

    [[nodiscard]] HTTPResponse send(const http::Request& request, std::stop_token /*stop*/) const override {
        ++requests;
        last = request;
        isSilent.wait(true);
        return answer;
    }
};

/// A ring that the user doesn't unlock.
class LockedKeys final : public KeyStore {
    [[nodiscard]] KeyReading readNow(const std::string& /*account*/, const std::stop_token& /*stop*/) const override {
        return {.state = KeyState::locked, .key = std::nullopt, .problem = lockedSentence};
    }

    void setNow(const std::optional<std::string>& /*key*/, const std::string& /*account*/,
                const std::stop_token& /*stop*/) override {
        throw KeyStoreError("locked", KeyState::locked);
    }
};

class AIFlowTests : public CallFlowsTests {
protected:
    AIFlowTests() {
        model->settings.ai =
            AISettings{.enabled = true, .provider = AIProviderKind::openAICompatible, .compatModel = "small"};
        model->transport = transport;
        answer(R"({"title":"Fresh","summary":["It went well."]})");
        id = *QCoro::waitFor(record());
    }

    void answer(const std::string& content) const {
        transport->answer = {.status = 200,
                             .body = nlohmann::json{{"choices", {{{"message", {{"content", content}}}}}}}.dump()};
    }

    std::shared_ptr<ScriptedTransport> transport = std::make_shared<ScriptedTransport>();
    Uuid id;
};

TEST_F(AIFlowTests, runAI_twiceAtOnce_runsOnce) {
    transport->isSilent = true;
    auto first = model->runAI(id);
    QCoro::waitFor(model->runAI(id));
    transport->isSilent = false;
    transport->isSilent.notify_all();
    QCoro::waitFor(first);
    EXPECT_EQ(transport->requests, 1);
    EXPECT_EQ(model->note(id)->title, "Fresh");
    EXPECT_EQ(toastText(), "Summary by small");
    EXPECT_THAT(model->aiRunning.value(), IsEmpty());
}

TEST_F(AIFlowTests, retranscribe_whileTheSummaryOfANewCallIsAwaited_isNotTakenForAnotherPrograms) {
    AISettings settings = model->settings.ai.value();
    settings.askEachTime = false;
    model->settings.ai = settings;
    transport->isSilent = true;
    auto stopping = record();
    EXPECT_TRUE(waitUntil([&] { return !model->aiRunning.value().empty(); }));
    QCoro::waitFor(model->retranscribe(*model->selection.value()));
    EXPECT_EQ(toastText(), "New transcript");
    transport->isSilent = false;
    transport->isSilent.notify_all();
    QCoro::waitFor(stopping);
}

TEST_F(AIFlowTests, runAI_titleOfTheUsersOwn_stays) {
    model->update(id, true, [](Note& note) { note.title = "Mine"; });
    QCoro::waitFor(model->runAI(id));
    EXPECT_EQ(model->note(id)->title, "Mine");
    EXPECT_EQ(model->note(id)->call->digest->title, "Fresh");
}

TEST_F(AIFlowTests, runAI_undone_bringsTheOldSummaryBackAndKeepsWhatWasTyped) {
    const Note before = *model->note(id);
    QCoro::waitFor(model->runAI(id));
    const auto undo = model->toast.value()->undo;
    model->update(id, true, [](Note& note) { note.blocks.push_back(Block{.text = "typed"}); });
    const Note after = *model->note(id);
    undo();
    ASSERT_TRUE(waitUntil([&] { return model->note(id)->call == before.call; }));
    EXPECT_EQ(model->note(id)->title, before.title);
    auto blocks = model->note(id)->blocks;
    EXPECT_EQ(blocks.back().text, "typed");
    blocks.pop_back();
    EXPECT_EQ(blocks, before.blocks);
    EXPECT_THAT(model.stored(), ElementsAre(*model->note(id)));

    // In another run, too, and to and fro.
    model.restart();
    model.load();
    ASSERT_TRUE(model->hasEarlier(id));
    QCoro::waitFor(model->bringBackEarlier(id));
    EXPECT_EQ(model->note(id)->call, after.call);
    EXPECT_EQ(model->note(id)->title, "Fresh");
    EXPECT_EQ(model->note(id)->blocks, after.blocks);
}

TEST_F(AIFlowTests, localSummaryAndTranscript_areUndoneToo) {
    EXPECT_FALSE(model->hasEarlier(id)) << "the first ones replaced nothing";
    const auto segments = model->note(id)->call->segments;
    QCoro::waitFor(model->retranscribe(id));
    ASSERT_NE(model->note(id)->call->segments, segments);
    model->toast.value()->undo();
    ASSERT_TRUE(waitUntil([&] { return model->note(id)->call->segments == segments; }));

    QCoro::waitFor(model->runAI(id));
    model->useLocalSummary(id);
    EXPECT_TRUE(model->note(id)->call->digest->isLocal);
    model->toast.value()->undo();
    EXPECT_TRUE(waitUntil([&] { return model->note(id)->call->digest->provider == "small"; }));
}

TEST_F(AIFlowTests, runAI_keyLocked_saysSo) {
    model->keys = std::make_shared<LockedKeys>();
    model->settings.ai = AISettings{.enabled = true};
    QCoro::waitFor(model->runAI(id));
    EXPECT_EQ(model->aiError.value().at(id), KeyStore::lockedSentence);
    QCoro::waitFor(model->setKey("sk-new"));
    EXPECT_EQ(toastText(), "Couldn’t save the key to the Keychain");
    QCoro::waitFor(model->setKey(" "));
    EXPECT_EQ(toastText(), "Couldn’t remove the key from the Keychain");
}

TEST_F(AIFlowTests, runAI_serverOnThisComputer_isGivenTheKeyThatIsThere) {
    model->settings.ai = AISettings{.enabled = true,
                                    .provider = AIProviderKind::openAICompatible,
                                    .compatBaseURL = "http://localhost:4000/v1",
                                    .compatModel = "small"};
    QCoro::waitFor(model->runAI(id));
    EXPECT_EQ(transport->key(), "");
    QCoro::waitFor(model->setKey("sk-gateway"));
    QCoro::waitFor(model->runAI(id));
    EXPECT_EQ(transport->key(), "Bearer sk-gateway");
    // Without it the user learns why it wasn't there.
    model->keys = std::make_shared<LockedKeys>();
    transport->answer = {.status = 401, .body = ""};
    QCoro::waitFor(model->runAI(id));
    EXPECT_EQ(model->aiError.value().at(id), KeyStore::lockedSentence);
}

TEST_F(AIFlowTests, remove_takesTheEarlierVersionAlong) {
    QCoro::waitFor(model->runAI(id));
    const Note note = *model->note(id);
    model->remove(id);
    model->flushSaves();
    EXPECT_THAT(std::vector<std::filesystem::path>(
                    std::filesystem::directory_iterator(model.folder() / "Library" / "Earlier"), {}),
                IsEmpty());
    QCoro::waitFor(model->restore(note));
    QCoro::waitFor(model->bringBackEarlier(id));
    EXPECT_TRUE(model->note(id)->call->digest->isLocal);
}

TEST_F(AIFlowTests, runAI_fails_leavesTheNoteAsItWas) {
    const auto before = model.stored();
    transport->answer = {.status = 429, .body = ""};
    QCoro::waitFor(model->runAI(id));
    EXPECT_EQ(model->aiError.value().at(id), "The provider is rate-limiting your key. Try again in a minute.");
    EXPECT_EQ(model.stored(), before);
    model->useLocalSummary(id);
    EXPECT_THAT(model->aiError.value(), IsEmpty());
}

TEST_F(AIFlowTests, stop_automatic_asksTheAIUnlessCancelled) {
    model->settings.ai = AISettings{
        .enabled = true, .provider = AIProviderKind::openAICompatible, .compatModel = "small", .askEachTime = false};
    const auto makeTranscriber = model->makeTranscriber;
    model->makeTranscriber = [&] {
        model->cancelProcessing(); // Once the flow has begun, however fast it is.
        return makeTranscriber();
    };
    QCoro::waitFor(record());
    EXPECT_EQ(transport->requests, 0);
    model->makeTranscriber = makeTranscriber;
    const auto other = QCoro::waitFor(record());
    EXPECT_EQ(model->note(other)->call->digest->provider, "small");
}

} // namespace
} // namespace varnic

#include "HTTP/BoundPort.h"
#include "HTTP/LocalServer.h"
#include "VarnicCore/AISummariser/AIError.h"
#include "VarnicCore/AISummariser/AnthropicSummariser.h"
#include "VarnicCore/AISummariser/CompatibleSummariser.h"
#include "VarnicCore/AISummariser/FixedTransport.h"
#include "VarnicCore/AISummariser/URLSessionTransport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace varnic {
namespace {

using namespace std::chrono_literals;

const std::string key = "sk-private-key";
const std::vector<Segment> segments{{Speaker::you, 0, 2, "I will send the designs."},
                                    {Speaker::them, 65.9, 70, "The contract looks fine, the contract is short."}};
const DigestContext context{.callDate = Date(std::chrono::days(20'000)), .yourName = "Sam", .themName = "Maya"};

std::shared_ptr<URLSessionTransport> transport(std::chrono::milliseconds timeout = 20s) {
    return std::make_shared<URLSessionTransport>(timeout);
}

class Provider : public ::testing::Test {
protected:
    [[nodiscard]] AnthropicSummariser anthropic(const std::string& scenario) const {
        return {std::string(AISettings::defaultAnthropicModel), key, transport(), server_.url(scenario)};
    }

    [[nodiscard]] CompatibleSummariser compatible(const std::string& scenario) const {
        return {server_.url(scenario), "small", key, transport()};
    }

    /// The request as the server saw it.
    static nlohmann::json seen(const AISummariser& summariser) {
        return nlohmann::json::parse(summariser.digest(segments, context, {}).summary.front());
    }

private:
    LocalServer server_;
};

/// The sentence of the failure; empty where there is none. It never holds the key.
std::string failure(const std::function<void()>& action) {
    try {
        action();
        return "";
    } catch (const std::exception& error) {
        EXPECT_EQ(std::string(error.what()).find(key), std::string::npos);
        return error.what();
    }
}

std::string failureOf(const AISummariser& summariser) {
    return failure([&] { static_cast<void>(summariser.digest(segments, context, {})); });
}

TEST_F(Provider, digest_ofGoodAnswers_isRead) {
    const AnthropicSummariser claude = anthropic("good");
    const CompatibleSummariser small = compatible("good");
    const AnthropicSummariser fenced = anthropic("fenced");
    const CompatibleSummariser slow = compatible("slow");
    for (const AISummariser* summariser : std::initializer_list<const AISummariser*>{&claude, &small, &fenced, &slow}) {
        const CallDigest digest = summariser->digest(segments, context, {});
        EXPECT_EQ(digest.title, "Launch plan");
        EXPECT_THAT(digest.summary, ::testing::ElementsAre("The launch moves to May.", "Pricing stays open."));
        ASSERT_EQ(digest.actions.size(), 2U);
        EXPECT_EQ(digest.actions[0].owner, Speaker::you);
        EXPECT_EQ(digest.actions[0].due, "Friday");
        EXPECT_EQ(digest.actions[1].owner, std::nullopt);
        EXPECT_EQ(digest.actions[1].due, std::nullopt);
        EXPECT_EQ(digest.provider, summariser->displayName());
        EXPECT_FALSE(digest.isLocal);
    }
    EXPECT_EQ(claude.displayName(), "Claude Haiku 5.5");
}

TEST_F(Provider, digest_withoutATitle_isNamedAfterTheCall) {
    const std::vector<Segment> small{{Speaker::you, 0, 1, "Hello."}};
    EXPECT_EQ(anthropic("untitled").digest(small, context, {}).title, "Call with Maya");
    EXPECT_NE(compatible("untitled").digest(small, context, {}).title, "Call with Maya");
}

TEST_F(Provider, request_onTheWire_holdsWhatTheProviderAsksFor) {
    const auto claude = seen(anthropic("echo"));
    EXPECT_EQ(claude["path"], "/echo/v1/messages");
    EXPECT_EQ(claude["headers"]["x-api-key"], key);
    EXPECT_EQ(claude["headers"]["anthropic-version"], "2026-10-21");
    EXPECT_FALSE(claude["headers"].contains("anthropic-beta"));
    EXPECT_EQ(claude["body"]["messages"].size(), 1U);
    EXPECT_EQ(claude["body"]["max_tokens"], 16000);

    const auto small = seen(compatible("echo"));
    EXPECT_EQ(small["path"], "/echo/chat/completions");
    EXPECT_EQ(small["headers"]["Authorization"], "Bearer " + key);
    EXPECT_EQ(small["headers"]["Content-Type"], "application/json");
    EXPECT_EQ(small["body"]["stream"], false);
    EXPECT_FALSE(small.dump().contains("cookie") || small["headers"].contains("Expect"));
}

struct FailureCase {
    const char* scenario;
    const char* anthropic;
    const char* compatible;
};

TEST_F(Provider, digest_ofEveryFailure_givesItsSentence) {
    const char* const unreadable = "The provider’s answer couldn’t be read (not the JSON Varnic asked for).";
    const char* const cutOff = "The summary was cut off. Try a larger model.";
    const char* const empty = "The provider’s answer couldn’t be read (empty summary).";
    const char* const badKey = "The provider didn’t accept your API key.";
    const char* const limited = "The provider is rate-limiting your key. Try again in a minute.";
    const char* const busy = "The provider is busy right now. Try again shortly.";
    const char* const offline = "Couldn’t reach the provider — you seem to be offline.";
    const char* const large = "The provider’s answer couldn’t be read (more than 16 MB).";
    const char* const longHead = "The provider’s answer couldn’t be read (its headers are too long).";
    const char* const noHTTP = "The provider’s answer couldn’t be read (No HTTP response).";
    const char* const sermon =
        "The provider answered 500: \x1b[2JRepent!\n\x1b[2JRepent!\n\x1b[2JRepent!\n\x1b[2JRepent!…";
    const std::vector<FailureCase> cases{
        {"refusal", "The model declined to summarise this call (cyber).",
         "The provider’s answer couldn’t be read (no message)."},
        {"refusal-bare", "The model declined to summarise this call.",
         "The provider’s answer couldn’t be read (no message)."},
        {"cut-off", cutOff, cutOff},
        {"prose", unreadable, unreadable},
        {"empty-summary", empty, empty},
        {"no-text", unreadable, "The provider’s answer couldn’t be read (no message)."},
        {"not-json", "The provider’s answer couldn’t be read (not JSON).",
         "The provider’s answer couldn’t be read (no message)."},
        {"status-401", badKey, badKey},
        {"status-403", badKey, badKey},
        {"status-429", limited, limited},
        {"status-503", busy, busy},
        {"status-529", busy, busy},
        {"status-500", "The provider answered 500: boom", "The provider answered 500: boom"},
        {"parrot", "The provider answered 500: bad key …", "The provider answered 500: bad key Bearer …"},
        {"escaped-parrot", "The provider answered 500: bad key …", "The provider answered 500: bad key …"},
        {"sermon", sermon, sermon},
        {"status-201", "The provider answered 201: boom", "The provider answered 201: boom"},
        {"bare-404", "The provider answered 404: not found", "The provider answered 404: not found"},
        {"bare-599", "The provider answered 599: server error", "The provider answered 599: server error"},
        {"redirect", "The provider answered 302: found", "The provider answered 302: found"},
        {"hang-up", offline, offline},
        {"cut-in-head", offline, offline},
        {"cut-in-body", offline, offline},
        {"no-http", noHTTP, noHTTP},
        {"endless-body", large, large},
        {"endless-head", longHead, longHead},
    };
    for (const FailureCase& row : cases) {
        EXPECT_EQ(failureOf(anthropic(row.scenario)), row.anthropic) << row.scenario;
        EXPECT_EQ(failureOf(compatible(row.scenario)), row.compatible) << row.scenario;
    }
}

std::shared_ptr<FixedTransport> answering(int status, std::string body) {
    return std::make_shared<FixedTransport>(HTTPResponse{.status = status, .body = std::move(body)});
}

TEST(Answer, digest_ofWhatIsNestedAMillionTimes_givesItsSentence) {
    constexpr std::size_t depth = 1'000'000;
    const std::string deep = std::string(depth, '[') + std::string(depth, ']');
    const AnthropicSummariser claude("claude", key, answering(200, R"({"content": )" + deep + "}"));
    const CompatibleSummariser small(
        "http://localhost/v1", "small", key,
        answering(200, R"({"choices": [{"message": {"content": "{}"}, "finish_reason": )" + deep + "}]}"));
    EXPECT_EQ(failureOf(claude), "The provider’s answer couldn’t be read (not the JSON Varnic asked for).");
    EXPECT_EQ(failureOf(small), "The provider’s answer couldn’t be read (empty summary).");
}

TEST(Answer, digest_whereTheKeyIsAWordOfOurSentence_keepsTheSentence) {
    const CompatibleSummariser small("http://localhost/v1", "small", "key", answering(401, ""));
    try {
        static_cast<void>(small.digest(segments, context, {}));
        FAIL() << "no error";
    } catch (const AIError& error) {
        EXPECT_STREQ(error.what(), "The provider didn’t accept your API key.");
    }
}

TEST(Transport, send_ofAnAnswerThatDripsBeyondTheWholeTime_timesOut) {
    const LocalServer server;
    const http::Request request{.url = server.url("slow/v1/messages"), .method = "POST", .body = "{}"};
    try {
        static_cast<void>(URLSessionTransport(70ms).send(request, {}));
        FAIL() << "no time-out";
    } catch (const http::Error& error) {
        EXPECT_EQ(error.kind(), http::Error::Kind::timedOut);
    }
}

TEST(Transport, digest_ofALocalServer_goesThroughNoProxy) {
    const LocalServer server;
    const BoundPort refusing;
    ::setenv("http_proxy", refusing.url().c_str(), 1);
    const std::string local = failureOf(CompatibleSummariser(server.url("good"), "m", key, transport()));
    const std::string remote = failureOf(CompatibleSummariser("http://192.0.2.1/v1", "m", key, transport()));
    ::unsetenv("http_proxy");
    EXPECT_EQ(local, "");
    EXPECT_EQ(remote, "Couldn’t reach the provider — you seem to be offline.");
}

} // namespace
} // namespace varnic

#include "VarnicCore/AISummariser/AIPrompt.h"
#include "VarnicCore/AISummariser/HTTPTransport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <vector>

namespace varnic {
namespace {

TEST(AIPrompt, transcript_tellsTheCallAndTheTimes) {
    const std::vector<Segment> segments{
        {Speaker::you, -1, 2, "Hi."}, {Speaker::them, 65.9, 70, "Yes?"}, {Speaker::you, 3725, 3730, "Bye."}};
    DigestContext context{.callDate = parseDate("2025-06-03T23:30:00Z"), .source = "Zoom"};
    EXPECT_EQ(AIPrompt::transcript(segments, context, {}),
              "Call: Zoom, 2025-06-03\n\n[0:00] You: Hi.\n[1:05] Them: Yes?\n[1:02:05] You: Bye.");
    context = {.callDate = context.callDate, .yourName = "Sam", .themName = "Maya", .source = ""};
    const Region berlin{.locale = "ar_EG@numbers=arab", .timeZone = "Europe/Berlin"};
    EXPECT_EQ(AIPrompt::transcript({}, context, berlin), "Call: , 2025-06-04\nSender's name: Sam\nOther side: Maya\n");
}

TEST(AIPrompt, systemFor_asksForTheLanguageOfTheCall) {
    EXPECT_EQ(AIPrompt::systemFor("en-GB"), AIPrompt::system);
    EXPECT_NE(AIPrompt::systemFor("de-AT").find("Write in plain, concise German. Do not invent"), std::string::npos);
}

TEST(AIPrompt, schema_isClosedAtEveryLevel) {
    const auto& schema = AIPrompt::schema();
    EXPECT_EQ(schema["required"].dump(), R"(["title","summary","actions","email_subject","email_body"])");
    const auto& action = schema["properties"]["actions"]["items"];
    EXPECT_EQ(
        action.dump(),
        R"({"additionalProperties":false,"properties":{"due":{"type":"string"},"owner":{"enum":["you","them",)"
        R"("both"],"type":"string"},"text":{"type":"string"}},"required":["text","owner","due"],"type":"object"})");
    EXPECT_EQ(schema["additionalProperties"], false);
}

TEST(AIPrompt, parse_findsTheObjectAndTidiesIt) {
    const Date now(std::chrono::days(20'000));
    const CallDigest bare = AIPrompt::parse("Sure! {\"summary\":[\"A\", \" \\n\"]} Hope it helps", "P", "F", now);
    const CallDigest expected{.title = "F",
                              .summary = {"A"},
                              .actions = {},
                              .email = {.subject = "Follow-up", .body = ""},
                              .provider = "P",
                              .isLocal = false,
                              .createdAt = now};
    EXPECT_EQ(bare, expected);
    EXPECT_EQ(AIPrompt::parse("```json\n{\"summary\":[\"A\"],\"title\":null}\n```", "P", "F", now), expected);

    const CallDigest full = AIPrompt::parse(R"({"title": " T ", "actions": [
        {"text": " call ", "owner": "THEM", "due": "  "}, {"text": "\n"}, {"text": "b", "owner": "both", "due": " May "}
    ], "email_subject": " S ", "email_body": "B", "extra": [1]})",
                                            "P", "F", now);
    EXPECT_EQ(full.title, "T");
    ASSERT_EQ(full.actions.size(), 2U);
    EXPECT_EQ(full.actions[0].text, "call");
    EXPECT_EQ(full.actions[0].owner, Speaker::them);
    EXPECT_EQ(full.actions[0].due, std::nullopt);
    EXPECT_EQ(full.actions[1].owner, std::nullopt);
    EXPECT_EQ(full.actions[1].due, "May");
    EXPECT_EQ(full.email, (EmailDraft{.subject = " S ", .body = "B"}));
}

TEST(AIPrompt, parse_ofAnythingElse_isABadResponse) {
    const std::string deep = "{" + std::string(200'000, '[') + "}";
    for (const std::string& text :
         {std::string(), std::string("{}x}"), std::string("}{"), std::string("7"), std::string("[]"), deep,
          std::string("{\"summary\": \"A\"}"), std::string("{\"summary\": [1]}"), std::string("{\"summary\": [null]}"),
          std::string("{\"actions\": [{\"owner\": \"you\"}]}"), std::string("{\"actions\": [\"call\"]}"),
          std::string("{\"summary\": [\"A\"], \"title\": 1}"), std::string("{\"summary\": [\"\xff\"]}"),
          std::string("{\"summary\": [\"A\"], \"actions\": [{\"text\": \"a\", \"due\": 1}]}")}) {
        try {
            AIPrompt::parse(text, "P", "F");
            ADD_FAILURE() << text.substr(0, 50);
        } catch (const AIError& error) {
            EXPECT_EQ(error, AIError::badResponse("not the JSON Varnic asked for")) << text.substr(0, 50);
        }
    }
}

TEST(AIPrompt, mapStatus_findsTheMessage) {
    EXPECT_EQ(AIPrompt::mapStatus(400, R"({"error": {"message": "in"}, "message": "out"})"),
              AIError::server(400, "in"));
    EXPECT_EQ(AIPrompt::mapStatus(400, R"({"error": {"message": 1}, "message": "out"})"), AIError::server(400, "out"));
    EXPECT_EQ(AIPrompt::mapStatus(400, R"({"error": "flat"})"), AIError::server(400, "bad request"));
    EXPECT_EQ(AIPrompt::mapStatus(418, R"(["message"])"), AIError::server(418, "client error"));
    EXPECT_EQ(AIPrompt::mapStatus(403, R"({"message": "no"})"), AIError::badKey());
}

TEST(AIPrompt, mapTransport_changesOnlyWhatMeansOffline) {
    using Kind = http::Error::Kind;
    for (const Kind kind : {Kind::notConnectedToInternet, Kind::networkConnectionLost, Kind::cannotFindHost,
                            Kind::cannotConnectToHost, Kind::timedOut, Kind::dnsLookupFailed}) {
        const auto mapped = AIPrompt::mapTransport(std::make_exception_ptr(http::Error(kind, "")));
        EXPECT_THROW(std::rethrow_exception(mapped), AIError);
    }
    for (const auto& error :
         {std::make_exception_ptr(http::Error(Kind::secureConnectionFailed, "")),
          std::make_exception_ptr(http::Cancellation()), std::make_exception_ptr(AIError::badURL())}) {
        EXPECT_EQ(AIPrompt::mapTransport(error), error);
    }
}

} // namespace
} // namespace varnic

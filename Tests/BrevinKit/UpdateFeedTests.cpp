#include "BrevinKit/UpdateError.h"
#include "BrevinKit/UpdateFeed.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace brevin {
namespace {

UpdateFeed feedOf(std::string version, std::string url) {
    UpdateFeed feed;
    feed.version = std::move(version);
    feed.url = std::move(url);
    return feed;
}

TEST(UpdateFeed, decode_whatIsMissingOrUnknownDoesNotMatter) {
    const UpdateFeed bare = feedOf("1.4.2", "https://example.org");
    for (const std::string json : {
             R"({"version": "1.4.2", "url": "https://example.org"})",
             R"({"version": "1.4.2", "url": "https://example.org", "notes": null, "download": null})",
             R"({"channel": {"deep": [[[1]]]}, "url": "https://example.org", "version": "1.4.2", "size": 1e300})",
             R"({"version": "0", "version": "1.4.2", "url": "https://example.org"})",
         }) {
        EXPECT_EQ(UpdateFeed::decode(json), bare) << json;
    }
}

TEST(UpdateFeed, decode_readsWhatEncodeWrites) {
    UpdateFeed feed = feedOf("2.0", "https://example.org/„2“");
    feed.notes = "Line\n\"two\"\t…";
    EXPECT_EQ(UpdateFeed::decode(feed.encode()), feed);
    EXPECT_EQ(feed.encode().find("download"), std::string::npos);
    feed.minimumSystemVersion = "14.0";
    feed.download = UpdateFeed::Download{.url = "a", .length = 5'000'000'000, .edSignature = "b"};
    EXPECT_EQ(UpdateFeed::decode(feed.encode()), feed);
}

TEST(UpdateFeed, decode_lengthIsAWholeNumberInAnySpelling) {
    for (const std::string length : {"2048", "2048.0", "2.048e3"}) {
        const std::string json =
            R"({"version":"1","url":"u","download":{"url":"d","edSignature":"s","length":)" + length + "}}";
        EXPECT_EQ(UpdateFeed::decode(json).download->length, 2048) << length;
    }
}

TEST(UpdateFeed, decode_anythingElseIsOneError) {
    std::string endless = "50 MB";
    endless.resize(50'000'000, 'x');
    const std::string head = R"({"version":"1","url":"u")";
    const std::vector<std::string> feeds{
        "",
        "<!DOCTYPE html><html><body>Not found</body></html>",
        "null",
        "[]",
        R"("1.0")",
        "{}",
        head,
        R"({"version":"1"})",
        R"({"version":1,"url":"u"})",
        R"({"version":null,"url":"u"})",
        R"({"version":"1","url":["u"]})",
        "{\"version\":\"\xff\",\"url\":\"u\"}",
        head + R"(,"notes":5})",
        head + R"(,"minimumSystemVersion":14.0})",
        head + R"(,"download":"d"})",
        head + R"(,"download":{}})",
        head + R"(,"download":{"url":"d","edSignature":"s"}})",
        head + R"(,"download":{"url":"d","edSignature":"s","length":"5"}})",
        head + R"(,"download":{"url":"d","edSignature":"s","length":5.5}})",
        head + R"(,"download":{"url":"d","edSignature":"s","length":1e19}})",
        head + R"(,"download":{"url":"d","edSignature":"s","length":1e999}})",
        head + R"(,"download":{"url":"d","edSignature":null,"length":5}})",
        head + R"(,"notes":")" + endless + "\"}",
        std::string(500'000, '['),
    };
    for (const std::string& json : feeds) {
        try {
            UpdateFeed::decode(json);
            FAIL() << json.substr(0, 100);
        } catch (const UpdateError& error) {
            EXPECT_EQ(error.message(), "Couldn’t check for updates. Check your internet connection and try again.");
        }
    }
}

TEST(UpdateFeed, encode_ofMalformedTextStaysReadable) {
    UpdateFeed feed = feedOf("1", "u");
    feed.notes = "caf\xe9";
    EXPECT_EQ(UpdateFeed::decode(feed.encode()).notes, "caf\uFFFD");
}

} // namespace
} // namespace brevin

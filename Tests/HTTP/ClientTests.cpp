#include "HTTP/BoundPort.h"
#include "HTTP/Client.h"
#include "HTTP/LocalServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdlib>
#include <future>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace http {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using varnic::BoundPort;
using varnic::LocalServer;
using Kind = Error::Kind;

class Client : public testing::Test {
protected:
    [[nodiscard]] Request to(const std::string& scenario) const { return {.url = server.url(scenario)}; }

    /// Sends and keeps what comes; how that failed, if it did.
    std::optional<Kind> failure(const Request& request, std::uint64_t longest = Receiver().longest) {
        statuses.clear();
        body.clear();
        progress.clear();
        try {
            const int status = send(request, receiver(longest));
            EXPECT_THAT(statuses, ElementsAre(status));
            return std::nullopt;
        } catch (const Error& error) {
            sentence = error.what();
            return error.kind();
        }
    }

    Receiver receiver(std::uint64_t longest) {
        return {.longest = longest,
                .head = [this](int status) { statuses.push_back(status); },
                .body = [this](std::string_view bytes) { body += bytes; },
                .progress = [this](std::uint64_t received) { progress.push_back(received); }};
    }

    LocalServer server;
    std::vector<int> statuses;
    std::string body;
    std::vector<std::uint64_t> progress;
    /// Of the last failure.
    std::string sentence;
};

/// What the server sends as so many bytes.
std::string pattern(std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) {
        bytes += static_cast<char>(i % 251);
    }
    return bytes;
}

TEST_F(Client, send_isTheRequestOnTheWire) {
    EXPECT_EQ(failure(to("mirror")), std::nullopt);
    const auto get = nlohmann::json::parse(body);
    EXPECT_EQ(get["method"], "GET");
    EXPECT_FALSE(get["headers"].contains("Content-Length") || get["headers"].contains("Content-Type"));

    Request request = to("mirror");
    request.method = "POST";
    request.headers = {{"X-Key", "a key"}};
    request.body = "words";
    EXPECT_EQ(failure(request), std::nullopt);
    const auto post = nlohmann::json::parse(body);
    EXPECT_EQ(post["method"], "POST");
    EXPECT_EQ(post["body"], "words");
    EXPECT_EQ(post["headers"]["X-Key"], "a key");
    EXPECT_FALSE(post["headers"].contains("Cookie") || post["headers"].contains("Expect"));
}

TEST_F(Client, body_comesWholeAndTellsEachFurtherStep) {
    const std::size_t count = 2 * progressStep + 5;
    EXPECT_EQ(failure(to("bytes-" + std::to_string(count)), count), std::nullopt);
    EXPECT_EQ(body, pattern(count));
    EXPECT_THAT(statuses, ElementsAre(200));
    EXPECT_THAT(progress, ElementsAre(progressStep, 2 * progressStep));
}

TEST_F(Client, body_isHandedOverWhileTheServerStillSends) {
    bool isReleased = false;
    // The server holds the second half back until another request asks for it.
    const int status = send(to("held"), {.body = [&](std::string_view bytes) {
                                body += bytes;
                                if (!std::exchange(isReleased, true)) {
                                    send(to("release"), {});
                                }
                            }});
    EXPECT_EQ(status, 200);
    EXPECT_EQ(body, "first second");
}

TEST_F(Client, body_ofAByteTooMany_endsThere) {
    const std::size_t longest = progressStep + 1;
    for (const std::string& scenario : {"bytes-" + std::to_string(longest + 1), std::string("endless-body")}) {
        EXPECT_EQ(failure(to(scenario), longest), Kind::bodyTooLong) << scenario;
        EXPECT_EQ(body.size(), longest) << scenario;
    }
    EXPECT_EQ(failure(to("bytes-0"), 0), std::nullopt);
}

TEST_F(Client, send_thatFails_tellsWhy) {
    const BoundPort refusing;
    const BoundPort silent;
    silent.listen();

    const struct {
        Request request;
        Kind kind = Kind::other;
    } cases[] = {
        {{.url = refusing.url()}, Kind::cannotConnectToHost},
        {{.url = "http://nobody.invalid/"}, Kind::cannotFindHost},
        {{.url = "http://"}, Kind::badURL},
        {{.url = "ftp://127.0.0.1/"}, Kind::notHTTP},
        {{.url = silent.url(), .timeout = 100ms}, Kind::timedOut},
        {{.url = silent.url("https"), .timeout = 100ms}, Kind::timedOut},
        {to("hang-up"), Kind::networkConnectionLost},
        {to("cut-in-head"), Kind::networkConnectionLost},
        {to("no-http"), Kind::notHTTP},
        {to("endless-head"), Kind::headTooLong},
    };

    for (const auto& row : cases) {
        EXPECT_EQ(failure(row.request), row.kind) << row.request.url;
        EXPECT_EQ(body, "") << row.request.url;
    }
    const Request drip{.url = server.url("slow"), .timeout = 1h, .overallTimeout = 100ms};
    EXPECT_EQ(failure(drip), Kind::timedOut) << "never still for long, but slow";
    EXPECT_EQ(failure({.url = refusing.url(), .headers = {{"X-Key", "a\r\nX-Other: 1"}}}), Kind::other);
    EXPECT_EQ(sentence, "A header of the request holds a line break.");
    EXPECT_EQ(failure(to("cut-in-body")), Kind::networkConnectionLost);
    EXPECT_EQ(body, R"({"content": [)") << "what came before the connection was cut";
}

TEST_F(Client, redirect_isAResponse) {
    EXPECT_EQ(failure(to("redirect")), std::nullopt);
    EXPECT_THAT(statuses, ElementsAre(302));
}

TEST_F(Client, whatTheReceiverThrows_endsTheExchange) {
    const auto refuse = [](int status) {
        if (status != 200) {
            throw std::domain_error("refused");
        }
    };
    const auto stumble = [](std::string_view) { throw std::domain_error("full"); };
    EXPECT_THROW(send(to("status-404"), {.head = refuse, .body = [this](std::string_view bytes) { body += bytes; }}),
                 std::domain_error);
    EXPECT_THAT(body, IsEmpty());
    EXPECT_THROW(send(to("endless-body"), {.head = refuse, .body = stumble}), std::domain_error);
}

TEST_F(Client, send_overTLS_needsATrustedCertificate) {
    const Request request{.url = server.secureURL("bytes-3")};
    EXPECT_EQ(failure(request), Kind::serverCertificateUntrusted);
    EXPECT_EQ(sentence, "The server’s certificate isn’t trusted, so nothing was sent.");
    ::setenv("SSL_CERT_FILE", server.certificate().c_str(), 1);
    EXPECT_EQ(failure(request), std::nullopt);
    ::unsetenv("SSL_CERT_FILE");
}

TEST_F(Client, redirects_areFollowedFromHTTPSToHTTPSAsOftenAsAllowed) {
    ::setenv("SSL_CERT_FILE", server.certificate().c_str(), 1);

    struct Case {
        std::string url;
        int mostRedirects;
        int status;
    };

    const std::vector<Case> cases{
        {server.secureURL("hops-3"), 3, 200}, {server.secureURL("hops-3"), 2, 302},
        {server.secureURL("hops-1"), 0, 302}, {server.secureURL("redirect"), 3, 302}, // To HTTP.
        {server.url("hops-1"), 3, 302},
    };
    for (const auto& [url, mostRedirects, status] : cases) {
        EXPECT_EQ(failure({.url = url, .headers = {{"X-Key", "secret"}}, .mostRedirects = mostRedirects}),
                  std::nullopt);
        EXPECT_THAT(statuses, ElementsAre(status)) << url << " " << mostRedirects;
        EXPECT_EQ(status == 200, nlohmann::json::accept(body)) << body;
        EXPECT_THAT(body, testing::Not(testing::HasSubstr("secret")));
    }
    ::unsetenv("SSL_CERT_FILE");
}

TEST_F(Client, proxy_isTheEnvironmentsUnlessToldOtherwise) {
    const BoundPort refusing;
    Request direct = to("bytes-3");
    direct.usesProxy = false;
    ::setenv("http_proxy", refusing.url().c_str(), 1);
    EXPECT_EQ(failure(to("bytes-3")), Kind::cannotConnectToHost);
    EXPECT_EQ(failure(direct), std::nullopt);
    ::setenv("http_proxy", server.url("").c_str(), 1);
    // The proxy is this server: it gets a whole URL for a path, and answers all the same.
    EXPECT_EQ(failure({.url = "http://192.0.2.1/", .method = "POST", .body = "{}"}), std::nullopt);
    ::unsetenv("http_proxy");
}

TEST_F(Client, stop_isACancellationWhateverIsUnderWay) {
    for (const char* scheme : {"http", "https"}) {
        BoundPort silent;
        silent.listen();
        std::stop_source stop;
        auto sent = std::async(std::launch::async,
                               [&] { return send({.url = silent.url(scheme), .timeout = 1h}, {}, stop.get_token()); });
        silent.awaitClient();
        stop.request_stop();
        EXPECT_THROW(sent.get(), Cancellation) << scheme;
    }
    std::stop_source stop;
    const auto stopNow = [&stop](std::string_view) { stop.request_stop(); };
    EXPECT_THROW(send(to("endless-body"), {.body = stopNow}, stop.get_token()), Cancellation);
    EXPECT_THROW(send(to("mirror"), receiver(1), stop.get_token()), Cancellation) << "asked beforehand";
    EXPECT_THAT(statuses, IsEmpty());
}

} // namespace
} // namespace http

#include "Varnic/SelfTest/FakeAI.h"

#include <nlohmann/json.hpp>

namespace varnic {

namespace {

constexpr const char* reply =
    R"({"title":"Launch plan & pricing","summary":["Onboarding drops to two screens.","One Mac is ₹1,500; a three-Mac )"
    R"(bundle is being tested at ₹2,500."],"actions":[{"text":"Send the onboarding designs","owner":"you","due":)"
    R"("Friday"},{"text":"Update the pricing page","owner":"them","due":"tomorrow"}],"email_subject":)"
    R"("Follow-up: launch plan","email_body":"Hi Mira,\n\nThanks for today.\n\nTara"})";

constexpr const char* refusal =
    R"({"type":"error","error":{"type":"authentication_error","message":"invalid x-api-key"}})";

} // namespace

HTTPResponse FakeAI::send(const http::Request& /*request*/, std::stop_token /*stop*/) const {
    ++calls_;
    const int code = status;
    if (code != 200) {
        return {.status = code, .body = refusal};
    }
    const nlohmann::json message{
        {"type", "message"}, {"stop_reason", "end_turn"}, {"content", {{{"type", "text"}, {"text", reply}}}}};
    return {.status = code, .body = message.dump()};
}

} // namespace varnic

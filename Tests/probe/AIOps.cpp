#include "probe/Ops.h"

#include "VarnicCore/AISummariser/AIPrompt.h"
#include "VarnicCore/AISummariser/AISettings.h"
#include "VarnicCore/AISummariser/FixedTransport.h"
#include "VarnicCore/AISummariser/SummariserFactory.h"

#include <memory>
#include <utility>

namespace varnic::probe {

namespace {

AISettings settings(const Arguments& args) {
    try {
        return AISettings::decode(args.at("settings").dump());
    } catch (const DecodeError& error) {
        throw ProbeError(std::string("settings: ") + error.what());
    }
}

/// The summariser of the settings, as if they were switched on.
std::unique_ptr<AISummariser> summariser(const Arguments& args, HTTPResponse response = {}) {
    AISettings on = settings(args);
    on.enabled = true;
    MemoryKeyStore keys;
    keys.setKey(ifPresent(args, "key", &Arguments::text), on.keyAccount());
    return SummariserFactory::ai(on, keys, std::make_shared<FixedTransport>(std::move(response)));
}

Json describe(const Arguments& args) {
    const AISettings chosen = settings(args);
    return {{"modelName", chosen.modelName()},
            {"keyAccount", chosen.keyAccount()},
            {"staysOnThisMac", chosen.staysOnThisMac()},
            {"needsKey", chosen.needsKey()},
            {"destination", chosen.destination()}};
}

Json mapStatus(const Arguments& args) {
    const AIError error = AIPrompt::mapStatus(args.integer("status"), args.text("body"));
    return {{"type", error.name()}, {"message", error.what()}};
}

Json request(const Arguments& args) {
    const http::Request made = summariser(args)->request(args.segments(), args.context(), args.region());
    Json headers = Json::object();
    for (const auto& [name, value] : made.headers) {
        headers[name] = value;
    }
    return {{"url", made.url}, {"method", made.method}, {"headers", headers}, {"body", Json::parse(made.body)}};
}

Json digest(const Arguments& args) {
    const auto ai = summariser(args, {.status = args.integer("status"), .body = args.text("body")});
    return encode(ai->digest(args.segments(), args.context(), args.region(), args.now(), {}));
}

} // namespace

Operations aiOps() {
    return {
        {"ai.describe", describe},
        {"ai.transcript",
         [](const Arguments& args) -> Json {
             return AIPrompt::transcript(args.segments(), args.context(), args.region());
         }},
        {"ai.parse",
         [](const Arguments& args) {
             return encode(
                 AIPrompt::parse(args.text("text"), args.text("provider"), args.text("fallbackTitle"), args.now()));
         }},
        {"ai.mapStatus", mapStatus},
        {"ai.request", request},
        {"ai.digest", digest},
    };
}

} // namespace varnic::probe

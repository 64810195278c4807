#include "probe/Ops.h"

#include "BrevinKit/UpdateLogic.h"

#include <glib.h>

#include <memory>
#include <span>

namespace varnic::probe {

namespace {

std::vector<std::uint8_t> bytesOf(const std::string& base64) {
    gsize size = 0;
    const std::unique_ptr<guchar, decltype(&g_free)> data(g_base64_decode(base64.c_str(), &size), g_free);
    return {data.get(), data.get() + size};
}

Json systemSupports(const Arguments& args) {
    const Json& system = args.at("system");
    if (!system.is_array() || system.size() != 3) {
        throw ProbeError("system must be three numbers");
    }
    return brevin::UpdateLogic::systemSupports(
        ifPresent(args, "minimum", &Arguments::text),
        {system[0].get<std::int64_t>(), system[1].get<std::int64_t>(), system[2].get<std::int64_t>()});
}

} // namespace

Operations updateOps() {
    return {
        {"update.isNewer",
         [](const Arguments& args) -> Json {
             return brevin::UpdateLogic::isNewer(args.text("candidate"), args.text("current"));
         }},
        {"update.verify",
         [](const Arguments& args) -> Json {
             return brevin::UpdateLogic::verify(bytesOf(args.text("data")), args.text("signature"),
                                                args.text("publicKey"));
         }},
        {"update.systemSupports", systemSupports},
    };
}

} // namespace varnic::probe

// Answers requests for the core's functions, one JSON object a line, so that tests in any language can reach them.

#include "probe/Ops.h"

#include "VarnicCore/AISummariser/AIError.h"

#include <fmt/format.h>

#include <cstdio>
#include <iostream>
#include <string>

namespace {

using namespace varnic::probe;

Operations allOperations() {
    Operations all;
    for (auto group : {textOps, noteOps, editorOps, callOps, summariserOps, libraryOps, sessionOps, exchangeOps,
                       updateOps, aiOps, inkOps}) {
        all.merge(group());
    }
    return all;
}

Json failure(std::string_view type, const std::string& message) {
    return {{"error", {{"type", type}, {"message", message}}}};
}

Json answer(const Operations& operations, const std::string& line) {
    try {
        const Json request = Json::parse(line);
        if (!request.is_object() || !request.contains("op") || !request["op"].is_string()) {
            throw ProbeError("a request is an object with an op");
        }
        const auto found = operations.find(request["op"].get<std::string>());
        if (found == operations.end()) {
            throw ProbeError("unknown op " + request["op"].get<std::string>());
        }
        return {{"ok", found->second(Arguments(request.value("args", Json::object())))}};
    } catch (const ProbeError& error) {
        return failure("probe", error.what());
    } catch (const Json::exception& error) {
        return failure("probe", error.what());
    } catch (const varnic::DecodeError& error) {
        return failure("DecodeError", error.what());
    } catch (const varnic::AIError& error) {
        return failure(error.name(), error.what());
    } catch (const std::exception& error) {
        return failure("error", error.what());
    }
}

} // namespace

int main() {
    const Operations operations = allOperations();
    for (std::string line; std::getline(std::cin, line);) {
        if (line.find_first_not_of(" \t\r") == std::string::npos) {
            continue;
        }
        fmt::print("{}\n", answer(operations, line).dump(-1, ' ', false, Json::error_handler_t::replace));
        std::fflush(stdout);
    }
    return 0;
}

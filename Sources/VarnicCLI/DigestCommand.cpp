#include "VarnicCLI/Command.h"
#include "VarnicCLI/Files.h"
#include "VarnicCLI/NotePrinter.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace varnic::cli {

ExitCode digest(const Arguments& arguments) {
    const std::string& name = arguments.onlyWord("file with a transcript");
    const Date now = currentDate();
    const auto segments = decode<std::vector<Segment>>(readFile(name));
    const std::string yourName = arguments.valueOr("your-name", "");
    const std::string theirName = arguments.valueOr("their-name", "");
    const DigestContext context{.callDate = now, .yourName = yourName, .themName = theirName, .source = "Call"};
    const CallDigest made = ExtractiveSummariser::makeDigest(segments, context, Region::user(), now);
    if (arguments.has("json")) {
        Terminal::printJson(jsonText(encode(made)));
    } else {
        print(made, yourName, theirName);
    }
    return ExitCode::success;
}

} // namespace varnic::cli

#include "VarnicCLI/Command.h"
#include "VarnicCLI/MissingDevices.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicPlatform/Capture/SoundSurvey.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

namespace varnic::cli {

namespace {

nlohmann::json orNull(const std::optional<std::string>& text) {
    return text ? nlohmann::json(*text) : nlohmann::json();
}

} // namespace

ExitCode devices(const Arguments& arguments) {
    arguments.expectNoWords();
    const SoundSurvey survey = SoundSurvey::take();
    const std::vector<std::string> sentences = missingDevices(survey);
    const ExitCode code = survey.microphone || survey.output ? ExitCode::success : ExitCode::failure;
    if (arguments.has("json")) {
        Terminal::printJson(jsonText({{"microphone", orNull(survey.microphone)},
                                      {"output", orNull(survey.output)},
                                      {"playing", survey.playing},
                                      {"missing", sentences}}));
        return code;
    }
    if (survey.microphone) {
        Terminal::print("{}   {}\n", Terminal::bold("Microphone"), *survey.microphone);
    }
    if (survey.output) {
        Terminal::print("{}       {}\n", Terminal::bold("Output"), *survey.output);
        Terminal::print("{}  {}\n", Terminal::bold("Playing now"),
                        survey.playing.empty() ? "nothing" : fmt::format("{}", fmt::join(survey.playing, ", ")));
    }
    for (const std::string& sentence : sentences) {
        Terminal::print(code == ExitCode::success ? stdout : stderr, "{}\n", sentence);
    }
    return code;
}

} // namespace varnic::cli

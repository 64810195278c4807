#include "VarnicCLI/Command.h"
#include "VarnicCLI/Files.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace varnic::cli {

namespace {

namespace fs = std::filesystem;

/// Where an exported file goes: into a folder under its own name.
fs::path destination(const fs::path& asked, const Note& note, ExportFormat format) {
    return fs::is_directory(asked) ? asked / Exporter::fittingFileName(note, format) : asked;
}

/// The format that a file of this name is in; Markdown where the name tells none.
ExportFormat formatOf(const fs::path& file) {
    const std::string ending = Unicode::lowerCased(file.extension().string());
    const auto* const format = std::ranges::find_if(
        allExportFormats, [&ending](ExportFormat one) { return "." + std::string(fileExtension(one)) == ending; });
    return format == allExportFormats.end() ? ExportFormat::markdown : *format;
}

/// The format asked for, when what is asked for besides goes with it.
ExportFormat formatOf(const Arguments& arguments) {
    const std::string name =
        arguments.valueOr("format", std::string(rawValue(formatOf(fs::path(arguments.valueOr("output", ""))))));
    const auto format = exportFormatFrom(name);
    if (!format) {
        throw UsageError(fmt::format("{} isn’t a format", name));
    }
    if (format != ExportFormat::markdown && arguments.has("json")) {
        throw UsageError("--json goes with markdown only");
    }
    if (format != ExportFormat::markdown && !arguments.has("output") && isatty(STDOUT_FILENO) == 1) {
        throw UsageError(fmt::format("a terminal can’t show a {} file; name a file with -o", title(*format)));
    }
    return *format;
}

} // namespace

ExitCode exportNote(const Arguments& arguments) {
    const std::string& id = arguments.onlyWord("note’s id");
    const ExportFormat format = formatOf(arguments);
    LibraryStore store(libraryFolder());
    const Note note = Wording::shown(findNote(store, id));
    const ExportOptions options{.includeTranscript = !arguments.has("no-transcript"),
                                .includeEmail = !arguments.has("no-email"),
                                .yourName = arguments.valueOr("your-name", std::string(label(Speaker::you)))};
    const std::string bytes = Exporter::data(note, format, options, Region::user());
    if (bytes.empty()) {
        throw std::runtime_error(fmt::format("The {} file couldn’t be made.", title(format)));
    }
    const auto output = arguments.value("output");
    if (output) {
        writeFile(destination(*output, note, format), bytes);
    }
    if (arguments.has("json")) {
        Terminal::printJson(jsonText({{"fileName", Exporter::fittingFileName(note, format)}, {"text", bytes}}));
    } else if (!output) {
        Terminal::printFile(bytes);
    }
    return ExitCode::success;
}

} // namespace varnic::cli

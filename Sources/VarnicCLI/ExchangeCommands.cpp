#include "VarnicCLI/Command.h"
#include "VarnicCLI/Files.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Export/MarkdownImport.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Text/Wording.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <simdjson.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace varnic::cli {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view byteOrderMark = "\uFEFF";

/// What is in a Markdown file. Throws std::runtime_error where it is no UTF-8 text.
MarkdownImport::Document documentIn(const fs::path& file) {
    const std::string bytes = readFile(file);
    if (!simdjson::validate_utf8(bytes)) {
        throw std::runtime_error(fmt::format("“{}” isn’t UTF-8 text.", file.filename().string()));
    }
    std::string_view text = bytes;
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    return MarkdownImport::blocks(text);
}

/// The file itself, or the Markdown files in the folder and those below it, in order of their names. Hidden ones are
/// other programs' own.
std::vector<fs::path> markdownFiles(const fs::path& path) {
    if (!fs::is_directory(path)) {
        return {path};
    }
    std::vector<fs::path> files;
    for (auto entry = fs::recursive_directory_iterator(path); entry != fs::recursive_directory_iterator(); ++entry) {
        const bool isHidden = entry->path().filename().string().starts_with('.');
        if (isHidden && entry->is_directory()) {
            entry.disable_recursion_pending();
        } else if (!isHidden && entry->path().extension() == ".md" && entry->is_regular_file()) {
            files.push_back(entry->path());
        }
    }
    std::ranges::sort(files);
    return files;
}

/// Where an exported file goes: into a folder under its own name.
fs::path destination(const fs::path& asked, const Note& note, ExportFormat format) {
    return fs::is_directory(asked) ? asked / Exporter::fileName(note, format) : asked;
}

/// The format asked for, when what is asked for besides goes with it.
ExportFormat formatOf(const Arguments& arguments) {
    const std::string name = arguments.valueOr("format", "markdown");
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
        Terminal::printJson(jsonText({{"fileName", Exporter::fileName(note, format)}, {"text", bytes}}));
    } else if (!output) {
        Terminal::printFile(bytes);
    }
    return ExitCode::success;
}

ExitCode importNotes(const Arguments& arguments) {
    const fs::path path = arguments.onlyWord("Markdown file or folder");
    const std::vector<fs::path> files = markdownFiles(path);
    Application application;
    AppModel& model = application.model;
    auto imported = nlohmann::json::array();
    bool allRead = true;
    for (const fs::path& file : files) {
        MarkdownImport::Document document;
        try {
            document = documentIn(file);
        } catch (const std::runtime_error& error) {
            Terminal::print(stderr, "varnic-cli: {}\n", error.what());
            allRead = false;
            continue;
        }
        const Uuid id =
            model.newNote(document.title.value_or(file.stem().string()), std::move(document.blocks), modifiedAt(file));
        // A library that cannot take this one can't take the others either.
        saveOrThrow(model, id);
        const Note& note = *model.note(id);
        imported.push_back({{"id", id.text()}, {"title", note.displayTitle()}});
        if (!arguments.has("json")) {
            Terminal::print("{}  {}\n", shortId(note), note.displayTitle());
        }
    }
    if (arguments.has("json")) {
        Terminal::printJson(jsonText(imported));
    } else if (imported.empty() && allRead) {
        Terminal::print(stderr, "There are no Markdown files in “{}”.\n", path.string());
    }
    return allRead ? ExitCode::success : ExitCode::failure;
}

} // namespace varnic::cli

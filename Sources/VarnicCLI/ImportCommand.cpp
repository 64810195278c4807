#include "VarnicCLI/Command.h"
#include "VarnicCLI/Files.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Export/MarkdownFile.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>
#include <simdjson.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace varnic::cli {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view byteOrderMark = "\uFEFF";

/// What is in a Markdown file. Throws std::runtime_error where it is no UTF-8 text.
MarkdownFile::Contents contentsOf(const fs::path& file, const Region& region) {
    const std::string bytes = readFile(file);
    if (!simdjson::validate_utf8(bytes)) {
        throw std::runtime_error(fmt::format("“{}” isn’t UTF-8 text.", file.filename().string()));
    }
    std::string_view text = bytes;
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    return MarkdownFile::read(text, region);
}

/// The text without what is no UTF-8, which a file's name may hold and a note may not.
std::string wellFormed(const fs::path& name) {
    return Unicode::utf8(Unicode::utf16(name.string()));
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

/// What the notes could not hold, in a sentence.
std::string described(const MarkdownFile::Simplified& simplified, std::size_t files) {
    std::vector<std::string> parts;
    if (simplified.nestedItems > 0) {
        parts.push_back(counted(simplified.nestedItems, "item of a list in a list is an item of one list now",
                                "items of lists in lists are items of one list now"));
    }
    if (simplified.codeLines > 0) {
        parts.push_back(counted(simplified.codeLines, "line of code has lost its indentation",
                                "lines of code have lost their indentation"));
    }
    return fmt::format("Simplified in {}: {}.", counted(files, "file", "files"), fmt::join(parts, ", "));
}

/// Makes notes of files, one after another, and tells of each.
class Import {
public:
    explicit Import(bool json) : json_(json) {}

    /// The file itself, or the Markdown files in the folder and those below it, in order of their names. Hidden ones
    /// are other programs' own. A folder that cannot be read is told and passed over.
    std::vector<fs::path> find(const fs::path& path) {
        std::error_code error;
        if (!fs::is_directory(path, error)) {
            return {path};
        }
        std::vector<fs::path> files;
        std::vector<fs::path> folders{path};
        while (!folders.empty()) {
            const fs::path folder = std::move(folders.back());
            folders.pop_back();
            for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
                 entry.increment(error)) {
                sort(*entry, files, folders);
            }
            if (error) {
                fail(fmt::format("“{}” can’t be read, and what is in it was left out.", folder.string()));
            }
        }
        std::ranges::sort(files);
        return files;
    }

    ExitCode run(const std::vector<fs::path>& files) {
        Application application;
        for (const fs::path& file : files) {
            if (application.interruption.happened()) {
                fail(fmt::format("Stopped. {} of {} files are in the library.", imported_.size(), files.size()));
                break;
            }
            line_.show(fmt::format("{} of {}  {}", imported_.size() + 1, files.size(), file.filename().string()));
            take(application.model, file);
        }
        line_.clear();
        if (json_) {
            Terminal::printJson(jsonText(imported_));
        }
        if (simplified_.isAny()) {
            Terminal::print(stderr, "{}\n", described(simplified_, simplifiedFiles_));
        }
        return isWhole_ ? ExitCode::success : ExitCode::failure;
    }

private:
    static void sort(const fs::directory_entry& entry, std::vector<fs::path>& files, std::vector<fs::path>& folders) {
        std::error_code error;
        if (entry.path().filename().string().starts_with('.')) {
            return;
        }
        if (entry.symlink_status(error).type() == fs::file_type::directory) {
            folders.push_back(entry.path());
        } else if (entry.path().extension() == ".md" && entry.is_regular_file(error)) {
            files.push_back(entry.path());
        }
    }

    void take(AppModel& model, const fs::path& file) {
        MarkdownFile::Contents contents;
        try {
            contents = contentsOf(file, model.region);
        } catch (const std::runtime_error& error) {
            fail(error.what());
            return;
        }
        const MarkdownFile::Simplified simplified = contents.simplified;
        const Uuid id = model.newNote(contents.title.value_or(wellFormed(file.stem())), std::move(contents.blocks),
                                      contents.created.value_or(modifiedAt(file)));
        // A library that cannot take this one can't take the others either.
        saveOrThrow(model, id);
        const Note& note = *model.note(id);
        imported_.push_back({{"id", id.text()}, {"title", note.displayTitle()}, {"file", wellFormed(file)}});
        if (simplified.isAny()) {
            imported_.back()["simplified"] = {{"nestedItems", simplified.nestedItems},
                                              {"codeLines", simplified.codeLines}};
            simplified_ += simplified;
            ++simplifiedFiles_;
        }
        if (!json_) {
            line_.clear();
            Terminal::print("{}  {}\n", shortId(note), note.displayTitle());
        }
    }

    void fail(const std::string& sentence) {
        line_.clear();
        Terminal::print(stderr, "varnic-cli: {}\n", sentence);
        isWhole_ = false;
    }

    bool json_;
    Terminal::StatusLine line_;
    nlohmann::json imported_ = nlohmann::json::array();
    MarkdownFile::Simplified simplified_;
    std::size_t simplifiedFiles_ = 0;
    bool isWhole_ = true;
};

} // namespace

ExitCode importNotes(const Arguments& arguments) {
    const fs::path path = arguments.onlyWord("Markdown file or folder");
    Import import(arguments.has("json"));
    const std::vector<fs::path> files = import.find(path);
    if (files.empty() && !arguments.has("json")) {
        Terminal::print(stderr, "There are no Markdown files in “{}”.\n", path.string());
    }
    return import.run(files);
}

} // namespace varnic::cli

#include "Varnic/AppModel/MarkdownNote.h"
#include "VarnicCLI/Command.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace varnic::cli {

namespace {

namespace fs = std::filesystem;

/// The text without what is no UTF-8, which a file's name may hold and a note may not.
std::string wellFormed(const fs::path& name) {
    return Unicode::utf8(Unicode::utf16(name.string()));
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
            Terminal::print(stderr, "Simplified in {} {}: {}.\n", simplifiedFiles_,
                            simplifiedFiles_ == 1 ? "file" : "files", MarkdownNote::described(simplified_));
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
        MarkdownNote read;
        try {
            read = MarkdownNote::read(file, model.region);
        } catch (const std::runtime_error& error) {
            fail(error.what());
            return;
        }
        const MarkdownFile::Simplified simplified = read.simplified;
        const Uuid id = model.newNote(std::move(read.title), std::move(read.blocks), read.created);
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

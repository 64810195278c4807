#include "VarnicCore/Library/LibraryStore.h"

#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Library/NoteFileReader.h"
#include "VarnicCore/Library/NoteJson.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <expected>
#include <functional>
#include <iterator>
#include <thread>
#include <unordered_map>
#include <utility>

namespace varnic {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view noteExtension = ".json";
constexpr const char* deletedNote = "note.json";
constexpr const char* deletedAudio = "audio";
constexpr const char* deletedEarlier = "earlier.json";

/// A note, or why it could not be read.
struct ReadNote : std::expected<Note, std::string> {
    using std::expected<Note, std::string>::expected;

    std::uint64_t fingerprint = 0;
};

/// The note files of a folder in order of their names. Throws LibraryError when it cannot be listed.
std::vector<fs::path> noteFiles(const fs::path& folder) {
    std::vector<fs::path> files;
    for (fs::path& entry : Folders::list(folder)) {
        if (entry.extension() == noteExtension) {
            files.push_back(std::move(entry));
        }
    }
    std::ranges::sort(files, {}, &fs::path::native);
    return files;
}

/// The disk of a folder or, where that is missing, of its nearest parent that exists.
std::optional<dev_t> diskOf(fs::path folder) {
    struct stat status{};
    while (::stat(folder.c_str(), &status) != 0) {
        if (!folder.has_relative_path()) {
            return std::nullopt;
        }
        folder = folder.parent_path();
    }
    return status.st_dev;
}

/// Fewer files than this are not worth a further thread.
constexpr std::size_t filesWorthAThread = 64;

/// Reads the files, in their order, with the help of as many threads as the machine runs at once.
std::vector<ReadNote> readAll(const std::vector<fs::path>& files, Date now) {
    std::vector<ReadNote> results(files.size(), std::unexpected(std::string()));
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        NoteFileReader reader;
        for (std::size_t i = next++; i < files.size(); i = next++) {
            try {
                results[i] = reader.read(files[i], now);
                results[i].fingerprint = reader.fingerprint();
            } catch (const std::exception& error) {
                results[i] = std::unexpected(error.what());
            }
        }
    };
    std::vector<std::jthread> helpers;
    const std::size_t cores = std::thread::hardware_concurrency();
    for (std::size_t i = 1; i < std::min(cores, files.size() / filesWorthAThread); ++i) {
        helpers.emplace_back(work);
    }
    work();
    helpers.clear(); // waits for them
    return results;
}

/// Of the notes with the same id keeps the one whose file is named by it, or else the first.
void keepOneOfAnId(std::vector<ReadNote>& results, const std::vector<fs::path>& files) {
    std::unordered_map<Uuid, std::size_t> kept;
    kept.reserve(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!results[i]) {
            continue;
        }
        const auto [entry, isFirst] = kept.try_emplace(results[i]->id, i);
        if (isFirst) {
            continue;
        }
        std::size_t other = i;
        if (files[i].stem() == results[i]->id.text()) {
            std::swap(entry->second, other);
        }
        results[other] =
            std::unexpected(fmt::format("It has the id of the note in “{}”.", files[entry->second].string()));
    }
}

} // namespace

bool LibraryStore::isIn(const fs::path& folder) {
    const auto isNote = [](const fs::path& file) { return Uuid::parse(file.stem().string()).has_value(); };
    std::error_code failure;
    return std::ranges::any_of(noteFiles(folder / "notes"), isNote) ||
           (fs::is_directory(folder / "notes", failure) && fs::is_directory(folder / "audio", failure));
}

LibraryStore::LibraryStore(fs::path root) : root_(std::move(root)) {
    for (const fs::path& folder : {notesDir(), audioDir()}) {
        try {
            Folders::make(folder);
        } catch (const LibraryError&) { // the first save reports it
        }
    }
    disk_ = diskOf(root_);
}

void LibraryStore::moved(const fs::path& root) {
    const auto follow = [&](fs::path& file) { file = root / file.lexically_relative(root_); };
    for (UnreadableFile& file : unreadable_) {
        follow(file.path);
    }
    for (auto& [id, version] : versions_) {
        follow(version.file);
    }
    root_ = root;
    disk_ = diskOf(root_);
}

fs::path LibraryStore::url(const Uuid& id) const {
    return notesDir() / (id.text() + std::string(noteExtension));
}

fs::path LibraryStore::audioFolder(const Uuid& id) const {
    return audioDir() / id.text();
}

std::vector<Note> LibraryStore::loadAll(Date now) {
    std::vector<fs::path> files;
    listingProblem_.reset();
    try {
        files = noteFiles(notesDir());
    } catch (const LibraryError& error) {
        listingProblem_ = error.what();
    }
    std::vector<ReadNote> results = readAll(files, now);
    keepOneOfAnId(results, files);
    unreadable_.clear();
    versions_.clear();
    std::vector<Note*> found;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (results[i]) {
            found.push_back(&*results[i]);
            versions_[results[i]->id] = {files[i], results[i].fingerprint};
        } else {
            unreadable_.push_back({files[i], results[i].error()});
        }
    }
    std::ranges::stable_sort(found, std::ranges::greater{}, [](const Note* note) { return note->created; });
    std::vector<Note> notes;
    notes.reserve(found.size());
    std::ranges::transform(found, std::back_inserter(notes), [](Note* note) { return std::move(*note); });
    return notes;
}

std::optional<Note> LibraryStore::load(const Uuid& id, Date now) const {
    try {
        return NoteFileReader().read(url(id), now);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void LibraryStore::save(const Note& note) {
    const std::string bytes = encoded(note);
    const fs::path file = url(note.id);
    if (const auto damaged = std::ranges::find(unreadable_, file, &UnreadableFile::path);
        damaged != unreadable_.end()) {
        Folders::moveIfThere(file, file.string() + ".damaged");
        unreadable_.erase(damaged);
    }
    prepare(note.id, bytes).replace();
}

AtomicWrite::Prepared LibraryStore::prepare(const Uuid& id, std::string_view bytes) const {
    if (!Folders::isThere(notesDir()) && disk_ && diskOf(root_) != disk_) {
        throw LibraryError("written", root_, std::make_error_code(std::errc::no_such_device));
    }
    Folders::make(notesDir());
    return {url(id), bytes};
}

std::string LibraryStore::encoded(const Note& note) {
    return jsonText(encode(note));
}

void LibraryStore::keepEarlier(const Note& note) const {
    Folders::make(earlierDir());
    AtomicWrite::replace(earlierDir() / url(note.id).filename(), encoded(note));
}

bool LibraryStore::hasEarlier(const Uuid& id) const {
    std::error_code ignored;
    return fs::exists(earlierDir() / url(id).filename(), ignored);
}

std::optional<Note> LibraryStore::earlier(const Uuid& id, Date now) const {
    try {
        return NoteFileReader().read(earlierDir() / url(id).filename(), now);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void LibraryStore::remove(const Uuid& id) const {
    const fs::path trash = deletedDir() / id.text();
    Folders::removeAll(trash);
    Folders::make(trash);
    Folders::moveIfThere(url(id), trash / deletedNote);
    Folders::moveIfThere(audioFolder(id), trash / deletedAudio);
    Folders::moveIfThere(earlierDir() / url(id).filename(), trash / deletedEarlier);
}

std::optional<Note> LibraryStore::restore(const Uuid& id, Date now) const {
    const fs::path trash = deletedDir() / id.text();
    Folders::moveIfThere(trash / deletedNote, url(id));
    Folders::moveIfThere(trash / deletedAudio, audioFolder(id));
    if (std::error_code ignored; fs::exists(trash / deletedEarlier, ignored)) {
        Folders::make(earlierDir());
        Folders::moveIfThere(trash / deletedEarlier, earlierDir() / url(id).filename());
    }
    Folders::removeAll(trash);
    return load(id, now);
}

std::vector<Note> LibraryStore::deleted(Date now) const {
    std::vector<std::pair<fs::file_time_type, Note>> found;
    NoteFileReader reader;
    for (const fs::path& entry : Folders::entries(deletedDir())) {
        try {
            found.emplace_back(fs::last_write_time(entry), reader.read(entry / deletedNote, now));
        } catch (const std::exception&) { // not a note that could be brought back
        }
    }
    std::ranges::stable_sort(found, std::ranges::greater{}, [](const auto& one) { return one.first; });
    std::vector<Note> notes;
    std::ranges::transform(found, std::back_inserter(notes), [](auto& one) { return std::move(one.second); });
    return notes;
}

void LibraryStore::purgeDeleted(int days, Date now) const {
    for (const fs::path& entry : Folders::entries(deletedDir())) {
        if (Folders::isOlder(entry, now, std::chrono::days(days))) {
            Folders::removeAll(entry);
        }
    }
    // A day is far longer than any write takes.
    for (const fs::path& entry : Folders::entries(notesDir())) {
        if (AtomicWrite::isTemporary(entry) && Folders::isOlder(entry, now, std::chrono::days(1))) {
            Folders::removeAll(entry);
        }
    }
}

void LibraryStore::removeAudio(const Uuid& id) const {
    Folders::removeAll(audioFolder(id));
}

std::int64_t LibraryStore::audioSize(const Uuid& id) const {
    std::int64_t sum = 0;
    for (const fs::path& entry : Folders::entries(audioFolder(id))) {
        std::error_code failure;
        const std::uintmax_t size = fs::file_size(entry, failure);
        sum += failure ? 0 : static_cast<std::int64_t>(size);
    }
    return sum;
}

} // namespace varnic

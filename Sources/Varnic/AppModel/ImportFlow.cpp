#include "Varnic/AppModel/AppModel.h"

#include "Varnic/AppModel/CallImport.h"
#include "Varnic/AppModel/MarkdownNote.h"
#include "Varnic/Background.h"

#include <QPointer>

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace varnic {

QCoro::Task<std::optional<Uuid>> AppModel::importCall(CallImport call) {
    if (isUnreadable.value()) { // a copy would be the beginning of another library in its place
        flash({.text = loadProblem.value().value_or(""), .symbol = warningSymbol});
        co_return std::nullopt;
    }
    const Uuid id = Uuid::random();
    const std::stop_token stop = stopProcessing_.get_token();
    std::optional<CopiedCall> copied;
    std::string problem;
    const QPointer self(this);
    const auto copy = [call, id, folder = store_.audioFolder(id)] { return copyIn(call, id, folder); };
    try {
        copied = co_await inBackground(copy);
    } catch (const std::exception& error) {
        problem = error.what();
    }
    if (!self) {
        co_return std::nullopt;
    }
    if (!copied || stop.stop_requested()) {
        store_.removeAudio(id);
        if (!problem.empty()) {
            flash({.text = std::move(problem), .symbol = warningSymbol});
        }
        co_return std::nullopt;
    }
    CallRecord record = copied->recording.record();
    record.themName = call.themName;
    const std::filesystem::path& file = call.files.them ? *call.files.them : *call.files.you;
    section = LibrarySection::all;
    showPlaceholder(id, file.stem().string(), std::move(record));
    std::shared_ptr<RecordingMarkFile> mark = std::move(copied->mark);
    if (call.isFiledAtOnce) {
        saveNow(id, [mark = std::exchange(mark, nullptr)] { mark->remove(); });
    }
    co_await process(std::move(copied->recording), std::move(mark));
    co_return self&& note(id) != nullptr ? std::optional(id) : std::nullopt;
}

QCoro::Task<> AppModel::importAudio(std::filesystem::path file) {
    CallImport call;
    call.files.them = std::move(file);
    co_await importCall(std::move(call));
}

QCoro::Task<> AppModel::importMarkdown(std::filesystem::path file) {
    std::optional<MarkdownNote> read;
    std::string problem;
    const QPointer self(this);
    const auto reading = [file, where = region] { return MarkdownNote::read(file, where); };
    try {
        read = co_await inBackground(reading);
    } catch (const std::exception& error) {
        problem = error.what();
    }
    if (!self) {
        co_return;
    }
    if (!read) {
        flash({.text = std::move(problem), .symbol = warningSymbol});
        co_return;
    }
    newNote(std::move(read->title), std::move(read->blocks), read->created);
    if (read->simplified.isAny()) {
        flash({.text = fmt::format("Simplified: {}.", MarkdownNote::described(read->simplified)),
               .symbol = warningSymbol});
    }
}

QCoro::Task<> AppModel::importFiles(std::vector<std::filesystem::path> files) {
    std::ranges::move(files, std::back_inserter(waitingImports_));
    if (isImporting.value()) {
        co_return; // whoever brings in the one before goes on with these
    }
    const QPointer self(this);
    isImporting = true;
    while (!waitingImports_.empty()) {
        auto next = std::move(waitingImports_.front());
        waitingImports_.pop_front();
        if (MarkdownNote::isNamedSo(next)) {
            co_await importMarkdown(std::move(next));
        } else {
            co_await importAudio(std::move(next));
        }
        if (!self) {
            co_return;
        }
    }
    isImporting = false;
}

QCoro::Task<> AppModel::chooseImport() {
    std::string message = "Choose a recording to transcribe on this Mac";
    const QPointer self(this);
    const auto file = co_await desktop.chooseRecording(std::move(message));
    if (self && file) {
        co_await importAudio(*file);
    }
}

} // namespace varnic

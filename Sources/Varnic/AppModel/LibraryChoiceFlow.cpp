#include "Varnic/AppModel/AppModel.h"
#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/AppModel/LibraryWatch.h"
#include "Varnic/Background.h"
#include "VarnicCore/Library/LibraryMove.h"
#include "VarnicCore/Library/LibraryStore.h"

#include <QPointer>

#include <fmt/format.h>

#include <system_error>

#include <unistd.h>

namespace varnic {

namespace {

namespace fs = std::filesystem;

/// The folder as it is to be remembered. Throws with the user's sentence where it holds no library to work with.
fs::path checkedLibrary(const fs::path& folder, const fs::path& current) {
    std::error_code failure;
    const fs::path found = fs::canonical(folder, failure);
    const std::string shown = fmt::format("“{}”", folder.string());
    if (failure) {
        throw LibraryMoveError(fmt::format("{} isn’t there.", shown));
    }
    if (found == fs::weakly_canonical(current, failure)) {
        throw LibraryMoveError(fmt::format("The library is in {} already.", shown));
    }
    if (!LibraryStore::isIn(found)) {
        throw LibraryMoveError(fmt::format("{} holds no library.", shown));
    }
    if (::access((found / "notes").c_str(), W_OK | X_OK) != 0) {
        throw LibraryMoveError(fmt::format("Nothing can be written into {}.", shown));
    }
    return found;
}

} // namespace

QCoro::Task<AppModel::LibraryMoved> AppModel::useLibrary(std::filesystem::path folder) {
    if (libraryMove.value()) {
        co_return {.isMoved = false, .sentence = "The library is being moved already."};
    }
    const QPointer self(this);
    const auto check = [folder = std::move(folder), current = store_.root()] {
        return checkedLibrary(folder, current);
    };
    std::string problem;
    try {
        const fs::path library = co_await inBackground(check);
        if (!self) {
            co_return {.isMoved = false, .sentence = "The program has ended."};
        }
        if (const auto reason = whyNotLeaveLibrary()) {
            throw LibraryMoveError(*reason);
        }
        saveAllBeforeLeaving();
        keepPlace(library);
        store_.goTo(library, AppPlaces::spareFolderFor(library));
    } catch (const std::exception& error) {
        problem = error.what();
    }
    if (!problem.empty()) {
        co_return {.isMoved = false, .sentence = problem};
    }
    forgetLibrary();
    Q_EMIT libraryMoved(store_.root());
    co_await load();
    co_return {.isMoved = true, .sentence = ""};
}

/// Of the library that was left nothing shows any more, and nothing of it can be brought back into this one.
void AppModel::forgetLibrary() {
    watch_.reset();
    toast = std::nullopt;
    studyDeck = std::nullopt;
    seek = std::nullopt;
    focusBlock = std::nullopt;
    selection = std::nullopt;
    aiError = std::map<Uuid, std::string>();
    isUnreadable = false;
    loadProblem = std::nullopt;
    notes_ = SharedNotes();
    histories_.clear();
    saveTasks_.clear();
    unsaved_.clear();
    keptEarlier_.clear();
    isRead_ = false;
    Q_EMIT notesChanged();
}

} // namespace varnic

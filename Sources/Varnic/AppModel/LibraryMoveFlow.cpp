#include "Varnic/AppModel/AppModel.h"

#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/AppModel/LibraryWatch.h"
#include "Varnic/Background.h"
#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/Library/LibraryMove.h"

#include <QPointer>

#include <fmt/format.h>

#include <utility>

namespace varnic {

namespace {

std::string staying(std::size_t files, const std::filesystem::path& folder) {
    return fmt::format("The library has moved. What others have written meanwhile stays in “{}” ({}).", folder.string(),
                       files == 1 ? "1 file" : fmt::format("{} files", files));
}

} // namespace

std::optional<std::string> AppModel::whyNotLeaveLibrary() const {
    if (isDemo || isPlaceFixed_) {
        return "VARNIC_DATA_DIR says where the library is, so it can’t be moved from here.";
    }
    if (isBusy(recorder_->state())) {
        return "A call is being recorded. The library can be moved after that.";
    }
    if (!processing.value().empty() || isImporting.value() || !aiRunning.value().empty()) {
        return "A call is being written down. The library can be moved after that.";
    }
    return std::nullopt;
}

std::optional<std::string> AppModel::whyNotMoveLibrary() const {
    if (auto reason = whyNotLeaveLibrary()) {
        return reason;
    }
    if (isUnreadable.value() || !isRead_) {
        return "The library can’t be looked into at the moment, so it can’t be moved.";
    }
    return std::nullopt;
}

QCoro::Task<AppModel::LibraryMoved> AppModel::moveLibrary(std::filesystem::path folder) {
    if (libraryMove.value()) {
        co_return {.isMoved = false, .sentence = "The library is being moved already."};
    }
    if (const auto reason = whyNotLeaveLibrary()) {
        co_return {.isMoved = false, .sentence = *reason};
    }
    const QPointer self(this);
    libraryMove = 0.0;
    stopMove_ = std::stop_source();
    std::shared_ptr<LibraryMove> move;
    std::string problem;
    const auto report = [this](double done) {
        loop_.post([this, done] {
            if (libraryMove.value()) {
                libraryMove = done;
            }
        });
    };
    // A library that can't be looked into stays, but another may take its place.
    const auto copy = [from = store_.root(), to = std::move(folder), report, stop = stopMove_.get_token(),
                       obstacle = whyNotMoveLibrary()] {
        auto copied = std::make_shared<LibraryMove>(from, to);
        if (obstacle) {
            throw LibraryMoveError(*obstacle);
        }
        copied->copy(report, stop);
        return copied;
    };
    bool isOtherThere = false;
    try {
        move = co_await inBackground(copy);
        if (self) {
            saveAllBeforeLeaving();
        }
    } catch (const OtherLibraryError& error) {
        problem = error.what();
        isOtherThere = true;
    } catch (const std::exception& error) {
        problem = error.what();
    }
    const std::filesystem::path before = self ? store_.root() : std::filesystem::path();
    // What has changed since is copied off the main thread too, which would have to wait for the disk; and what changes
    // meanwhile, anew.
    const auto catchUp = [&move] { move->catchUp(); };
    for (bool isDone = false; self && problem.empty() && !isDone;) {
        try {
            isDone = switchTo(*move);
            if (!isDone) {
                co_await inBackground(catchUp);
            }
        } catch (const std::exception& error) {
            problem = error.what();
        }
    }
    if (!self) {
        co_return {.isMoved = false, .sentence = "The program has ended."};
    }
    libraryMove = std::nullopt;
    if (!problem.empty()) {
        problem = whyNotMoveLibrary().value_or(problem); // such as a recording of our own that has begun
        const auto drop = [&move] { move.reset(); };
        co_await inBackground(drop);
        co_return {.isMoved = false, .sentence = problem, .isOtherThere = isOtherThere};
    }
    co_await readLibrary();
    const auto clean = [&move] { return move->removeOriginal(); };
    const std::size_t left = co_await inBackground(clean);
    co_return {.isMoved = true, .sentence = left == 0 ? "" : staying(left, before)};
}

/// Throws where a note isn't on the disk then.
void AppModel::saveAllBeforeLeaving() {
    flushSaves();
    if (!unsaved_.empty()) {
        throw LibraryMoveError("Some notes can’t be saved at the moment, so the library stayed where it is.");
    }
}

/// Notes in the settings where the library is. Throws with the user's sentence, and then they say what they said.
void AppModel::keepPlace(const std::filesystem::path& folder) {
    const std::string before = settings.libraryFolder.value();
    settings.libraryFolder = folder.string();
    if (!settings.save()) {
        settings.libraryFolder = before;
        throw LibraryMoveError(settings.problem.value().value_or("The settings can’t be saved."));
    }
    if (settings.isLibraryLost.value()) {
        settings.isLibraryLost = false;
        loadProblem = std::nullopt;
    }
}

/// Makes the copy the library; false where it isn't up to date. Throws with the user's sentence, and then all is as it
/// was.
bool AppModel::switchTo(LibraryMove& move) {
    if (const auto reason = whyNotMoveLibrary()) {
        throw LibraryMoveError(*reason);
    }
    if (stopMove_.stop_requested()) {
        throw LibraryMoveError("Stopped. The library is where it was.");
    }
    const auto keep = [&] {
        keepPlace(move.target());
        watch_.reset();
    };
    if (!store_.moveTo(move, AppPlaces::spareFolderFor(move.target()), keep)) {
        return false;
    }
    Q_EMIT libraryMoved(store_.root());
    // Whatever shows a call looks for its recording anew.
    const auto open = selection.value();
    selection = std::nullopt;
    selection = open;
    return true;
}

} // namespace varnic

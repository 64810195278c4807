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

std::optional<std::string> AppModel::whyNotMoveLibrary() const {
    if (isDemo || isPlaceFixed_) {
        return "VARNIC_DATA_DIR says where the library is, so it can’t be moved from here.";
    }
    if (isBusy(recorder_->state())) {
        return "A call is being recorded. The library can be moved after that.";
    }
    if (!processing.value().empty() || isImporting.value() || !aiRunning.value().empty()) {
        return "A call is being written down. The library can be moved after that.";
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
    if (const auto reason = whyNotMoveLibrary()) {
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
    const auto copy = [from = store_.root(), to = std::move(folder), report, stop = stopMove_.get_token()] {
        auto copied = std::make_shared<LibraryMove>(from, to);
        copied->copy(report, stop);
        copied->catchUp(); // Most of it, while nobody waits for that.
        return copied;
    };
    try {
        move = co_await inBackground(copy);
    } catch (const std::exception& error) {
        problem = error.what();
    }
    if (!self) {
        co_return {.isMoved = false, .sentence = "The program has ended."};
    }
    const std::filesystem::path before = store_.root();
    if (problem.empty()) {
        try {
            switchTo(*move);
        } catch (const std::exception& error) {
            problem = error.what();
        }
    }
    libraryMove = std::nullopt;
    if (!problem.empty()) {
        problem = whyNotMoveLibrary().value_or(problem); // such as a recording of our own that has begun
        const auto drop = [&move] { move.reset(); };
        co_await inBackground(drop);
        co_return {.isMoved = false, .sentence = problem};
    }
    co_await readLibrary();
    const auto clean = [&move] { return move->removeOriginal(); };
    const std::size_t left = co_await inBackground(clean);
    co_return {.isMoved = true, .sentence = left == 0 ? "" : staying(left, before)};
}

/// Makes the copy the library. Throws with the user's sentence, and then all is as it was.
void AppModel::switchTo(LibraryMove& move) {
    if (const auto reason = whyNotMoveLibrary()) {
        throw LibraryMoveError(*reason);
    }
    if (stopMove_.stop_requested()) {
        throw LibraryMoveError("Stopped. The library is where it was.");
    }
    flushSaves();
    if (!unsaved_.empty()) {
        throw LibraryMoveError("Some notes can’t be saved at the moment, so the library stayed where it is.");
    }
    watch_.reset();
    const std::string place = settings.libraryFolder.value();
    const auto keepPlace = [&] {
        settings.libraryFolder = move.target().string();
        if (!settings.save()) {
            settings.libraryFolder = place;
            throw LibraryMoveError(settings.problem.value().value_or("The settings can’t be saved."));
        }
    };
    try {
        store_.moveTo(move, AppPlaces::spareFolderFor(move.target()), keepPlace);
    } catch (const std::exception&) {
        readLibrary(); // which watches it again
        throw;
    }
    Q_EMIT libraryMoved(store_.root());
    // Whatever shows a call looks for its recording anew.
    const auto open = selection.value();
    selection = std::nullopt;
    selection = open;
}

} // namespace varnic

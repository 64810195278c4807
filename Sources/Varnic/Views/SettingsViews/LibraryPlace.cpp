#include "Varnic/Views/SettingsViews/LibraryPlace.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/SettingsViews/FolderView.h"

#include <fmt/format.h>

#include <QPointer>

#include <utility>

namespace varnic {

LibraryPlace* LibraryPlace::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new LibraryPlace(ViewContext::of(*engine).model);
}

LibraryPlace::LibraryPlace(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    watcher_ = model.libraryMove.addNotifier([this] { Q_EMIT changed(); });
    connect(&model, &AppModel::libraryMoved, this, &LibraryPlace::changed);
}

void LibraryPlace::show() {
    showFolder(model_, model_.dataDirectory());
}

void LibraryPlace::say(std::string sentence, bool isMoved) {
    sentence_ = std::move(sentence);
    isMoved_ = isMoved;
    other_.clear();
    Q_EMIT changed();
}

QCoro::Task<> LibraryPlace::chooseAndMove() {
    if (const auto reason = model_.whyNotLeaveLibrary()) {
        say(*reason, false);
        co_return;
    }
    const QPointer self(this);
    auto choosing = model_.desktop.chooseFolder("Choose an empty folder for the library, or one that holds a library");
    const Desktop::File folder = co_await choosing;
    if (!self || !folder) {
        co_return;
    }
    say("", false);
    auto moving = model_.moveLibrary(*folder);
    const AppModel::LibraryMoved moved = co_await moving;
    if (!self) {
        co_return;
    }
    if (moved.isOtherThere) {
        say(fmt::format("“{}” holds a library already. Varnic can use that one instead; the notes of this one stay in "
                        "“{}” as they are.",
                        folder->string(), model_.dataDirectory().string()),
            false);
        other_ = *folder;
        Q_EMIT changed();
    } else {
        const bool isPlain = moved.isMoved && moved.sentence.empty();
        say(isPlain ? fmt::format("The library is in “{}” now.", folder->string()) : moved.sentence, moved.isMoved);
    }
}

QCoro::Task<> LibraryPlace::goToOther() {
    const QPointer self(this);
    const std::filesystem::path other = std::exchange(other_, {});
    const std::filesystem::path before = model_.dataDirectory();
    Q_EMIT changed();
    auto going = model_.useLibrary(other);
    const AppModel::LibraryMoved moved = co_await going;
    if (self) {
        say(moved.isMoved ? fmt::format("Varnic uses the library in “{}” now. The other one is in “{}” as it was.",
                                        other.string(), before.string())
                          : moved.sentence,
            moved.isMoved);
    }
}

void LibraryPlace::keepThis() {
    say("", false);
}

} // namespace varnic

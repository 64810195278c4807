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
    Q_EMIT changed();
}

QCoro::Task<> LibraryPlace::chooseAndMove() {
    if (const auto reason = model_.whyNotMoveLibrary()) {
        say(*reason, false);
        co_return;
    }
    const QPointer self(this);
    auto choosing = model_.desktop.chooseFolder("Move the library to an empty folder");
    const Desktop::File folder = co_await choosing;
    if (!self || !folder) {
        co_return;
    }
    say("", false);
    auto moving = model_.moveLibrary(*folder);
    const AppModel::LibraryMoved moved = co_await moving;
    if (self) {
        const bool isPlain = moved.isMoved && moved.sentence.empty();
        say(isPlain ? fmt::format("The library is in “{}” now.", folder->string()) : moved.sentence, moved.isMoved);
    }
}

} // namespace varnic

#include "Varnic/Views/LibraryViews/Library.h"

#include "Varnic/Shell/Menus.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"

#include <filesystem>
#include <utility>

namespace varnic {

namespace {

std::optional<Uuid> idOf(const QString& text) {
    return Uuid::parse(text.toStdString());
}

} // namespace

Library* Library::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new Library(ViewContext::of(*engine).model);
}

Library::Library(AppModel& model, QObject* parent) : QObject(parent), model_(model), isLoaded_(!model.notes().empty()) {
    const auto follow = [this](auto& property, void (Library::*changed)()) {
        watchers_.push_back(property.addNotifier([this, changed] { Q_EMIT(this->*changed)(); }));
    };
    follow(model.section, &Library::sectionChanged);
    follow(model.query, &Library::queryChanged);
    follow(model.showConsent, &Library::showConsentChanged);
    follow(model.showSetup, &Library::showSetupChanged);
    follow(model.studyDeck, &Library::isStudyingChanged);
    follow(model.loadProblem, &Library::loadProblemChanged);
    follow(model.isUnreadable, &Library::isUnreadableChanged);
    connect(this, &Library::isUnreadableChanged, this, &Library::isLoadedChanged);
    connect(this, &Library::showConsentChanged, this, &Library::isAskingChanged);
    connect(this, &Library::showSetupChanged, this, &Library::isAskingChanged);
    connect(this, &Library::isStudyingChanged, this, &Library::isAskingChanged);
    connect(this, &Library::sectionChanged, this, &Library::listTitleChanged);
    connect(this, &Library::queryChanged, this, &Library::listTitleChanged);
    connect(&model, &AppModel::notesChanged, this, &Library::onNotesChanged);
}

QString Library::listTitle() const {
    if (isSearching()) {
        return QStringLiteral("Search");
    }
    const std::string_view name = title(model_.section.value());
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

/// Where the library is thought to be lost, the user doesn't miss it.
void Library::dismissLoadProblem() {
    model_.loadProblem = std::nullopt;
    model_.settings.isLibraryLost = false;
}

QString Library::loadProblem() const {
    return QString::fromStdString(Wording::shown(model_.loadProblem.value().value_or("")));
}

QString Library::emptyTitle() const {
    return section() == Notes ? QStringLiteral("No notes yet") : QStringLiteral("Nothing recorded yet");
}

QString Library::emptyDetail() const {
    return QString::fromStdString(
        Wording::shown(section() == Notes ? "Headings, to-dos, tables and flashcards — press Ctrl+N."
                                          : "Start a Zoom, Meet, Teams or FaceTime call, then press Record. No bot "
                                            "joins; both sides are written down here."));
}

QString Library::privacyText() {
    return QString::fromStdString(Wording::shown("Calls and notes stay on this Mac."));
}

/// Announces once that the library has been read, even where it is empty.
void Library::onNotesChanged() {
    if (!std::exchange(isLoaded_, true)) {
        Q_EMIT isLoadedChanged();
    }
}

void Library::open(const QString& note, const QString& block) {
    model_.selection = idOf(note);
    if (const auto id = idOf(block)) {
        model_.focusBlock = id;
    }
}

void Library::openHit(const QString& note, double time) {
    const auto id = idOf(note);
    model_.selection = id;
    if (id && time >= 0) {
        model_.seek = AppModel::Seek{*id, time};
    }
}

void Library::study(const QString& note) {
    model_.studyDeck = idOf(note);
}

void Library::markDone(const QString& note, const QString& block) {
    if (const auto id = idOf(note), todo = idOf(block); id && todo) {
        model_.toggleTodo(*id, *todo);
    }
}

void Library::remove(const QString& note) {
    if (const auto id = idOf(note)) {
        model_.remove(*id);
    }
}

void Library::importFiles(const QList<QUrl>& files) {
    std::vector<std::filesystem::path> recordings;
    for (const QUrl& file : files) {
        if (file.isLocalFile()) {
            recordings.emplace_back(file.toLocalFile().toStdString());
        }
    }
    model_.importFiles(std::move(recordings));
}

} // namespace varnic

#include "Varnic/Views/Note/NoteModel.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Export/ExportFormat.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Models/RelativeDate.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

namespace varnic {

namespace {

using namespace std::chrono_literals;

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

/// Whether the same files belong to both: the recordings, and the earlier version, which comes with a new digest.
bool hasSameFiles(const Note& a, const Note& b) {
    const auto madeAt = [](const CallRecord& call) {
        return call.digest ? std::optional(call.digest->createdAt) : std::nullopt;
    };
    return a.isCall() == b.isCall() &&
           (!a.call || (a.call->tracks == b.call->tracks && a.call->audioFolder == b.call->audioFolder &&
                        madeAt(*a.call) == madeAt(*b.call)));
}

bool hasSameLines(const Note& a, const Note& b) {
    return a.isCall() == b.isCall() &&
           (!a.call || (a.call->themName == b.call->themName && a.call->duration == b.call->duration &&
                        a.call->segments == b.call->segments));
}

} // namespace

NoteModel::NoteModel(QObject* parent) : QObject(parent), blank_(std::make_shared<const Note>(Date())), note_(blank_) {
    clock_.setInterval(1min);
    connect(&clock_, &QTimer::timeout, this, &NoteModel::changed);
    footerDelay_.setSingleShot(true);
    footerDelay_.setInterval(300ms);
    connect(&footerDelay_, &QTimer::timeout, this, &NoteModel::footerChanged);
    connect(this, &NoteModel::changed, &footerDelay_, qOverload<>(&QTimer::start));
}

void NoteModel::componentComplete() {
    app_ = &ViewContext::of(this).model;
    connect(app_.get(), &AppModel::notesChanged, this, [this](const ChangedNotes& changed) {
        if (concerns(changed, id_)) {
            refresh();
        }
    });
    connect(&app_->recorder(), &RecordingController::stateChanged, this, &NoteModel::changed);
    watchers_.push_back(app_->settings.yourName.addNotifier([this] {
        Q_EMIT changed();
        Q_EMIT transcriptChanged();
    }));
    watchers_.push_back(app_->showTranscript.addNotifier([this] { Q_EMIT transcriptShownChanged(); }));
    watchers_.push_back(app_->processing.addNotifier([this] { followProcessing(); }));
    watchers_.push_back(app_->aiRunning.addNotifier([this] { Q_EMIT changed(); }));
    watchers_.push_back(app_->seek.addNotifier([this] { takeSeek(); }));
    clock_.start();
    isProcessed_ = app_->processing.value().contains(id_);
    refresh();
    Q_EMIT changed();
    // Once the whole page has been made, its player included.
    QMetaObject::invokeMethod(this, &NoteModel::takeSeek, Qt::QueuedConnection);
}

void NoteModel::refresh() {
    const SharedNote stored = app_->notes().find(id_);
    const SharedNote before = std::exchange(note_, stored ? stored : blank_);
    if (note_ == before) {
        return;
    }
    if (!hasSameFiles(*before, *note_)) {
        lookForFiles();
    }
    Q_EMIT changed();
    if (!hasSameLines(*before, *note_)) {
        Q_EMIT transcriptChanged();
    }
    if (before->isCall() != isCall()) {
        Q_EMIT transcriptShownChanged();
    }
}

void NoteModel::lookForFiles() {
    files_ = app_->callFiles(*note_);
}

/// What is transcribed may have brought its audio with it, or be rid of it afterwards.
void NoteModel::followProcessing() {
    const bool isProcessed = app_->processing.value().contains(id_);
    if (std::exchange(isProcessed_, isProcessed) != isProcessed) {
        lookForFiles();
    }
    Q_EMIT changed();
}

void NoteModel::takeSeek() {
    if (app_ == nullptr) {
        return;
    }
    const std::optional<AppModel::Seek> wanted = app_->seek.value();
    if (!wanted || wanted->note != id_) {
        return;
    }
    // By a name: of one without, g++ 12 warns in optimised builds that its empty value is compared.
    static const std::optional<AppModel::Seek> none;
    app_->seek = none;
    if (isCall()) {
        app_->showTranscript = true;
        Q_EMIT seekRequested(wanted->time);
    }
}

QString NoteModel::noteId() const {
    return text(id_.text());
}

void NoteModel::setNoteId(const QString& id) {
    id_ = Uuid::parse(id.toStdString()).value_or(Uuid());
}

void NoteModel::edit(const std::function<void(Note&)>& change) {
    const SharedNote before = app_->notes().find(id_);
    app_->update(id_, false, [&](Note& note) {
        change(note);
        if (note != *before) {
            note.modified = currentDate();
        }
    });
}

QString NoteModel::title() const {
    return text(note_->title);
}

void NoteModel::setTitle(const QString& title) {
    app_->edit(id_, {.kind = EditKind::typing}, [&title](Note& note) -> std::optional<TextPlace> {
        if (std::string typed = title.toStdString(); typed != note.title) {
            note.title = std::move(typed);
            note.modified = currentDate();
        }
        return std::nullopt;
    });
}

QString NoteModel::titlePlaceholder() const {
    return isCall() ? "Untitled call" : "Untitled";
}

bool NoteModel::canDelete() const {
    return app_ != nullptr && app_->liveNoteID() != id_;
}

QStringList NoteModel::footer() const {
    if (app_ == nullptr) {
        return {};
    }
    QStringList items;
    if (const std::size_t words = NoteEditor::wordCount(*note_); words > 0) {
        items << text(fmt::format("{} word{}", words, words == 1 ? "" : "s"))
              << text(fmt::format("{} min read", NoteEditor::readingMinutes(*note_)));
    }
    return items << text("Edited " + relativeDate(note_->modified, currentDate(), app_->region));
}

QString NoteModel::eyebrow() const {
    if (!note_->call) {
        return {};
    }
    return text(app_->region.format(note_->call->startedAt, "EEE d MMM, HH:mm") + " · " +
                Clock::length(note_->call->duration));
}

std::string NoteModel::name(Speaker speaker) const {
    const std::string yours = app_->exportOptions().yourName;
    return note_->call ? note_->call->name(speaker, yours) : CallRecord().name(speaker, yours);
}

QString NoteModel::yourName() const {
    return app_ == nullptr ? QString() : text(name(Speaker::you));
}

QString NoteModel::themName() const {
    return note_->call ? text(note_->call->themName) : QString();
}

void NoteModel::setThemName(const QString& name) {
    app_->renameThem(id_, name.toStdString());
}

double NoteModel::nameFieldWidth() const {
    constexpr double characterWidth = 7.4;
    constexpr double margin = 10;
    constexpr double least = 86;
    constexpr double most = 160;
    const std::size_t characters = note_->call ? Unicode::characterCount(note_->call->themName) : 0;
    return std::clamp(static_cast<double>(characters) * characterWidth + margin, least, most);
}

bool NoteModel::hasShare() const {
    return note_->call && note_->call->yourShare();
}

double NoteModel::share() const {
    return note_->call ? note_->call->yourShare().value_or(0) : 0;
}

int NoteModel::sharePercent() const {
    return static_cast<int>(std::lround(share() * 100));
}

QList<QUrl> NoteModel::tracks() const {
    QList<QUrl> files;
    for (const auto& track : {files_.tracks.you, files_.tracks.them}) {
        if (track) {
            files << QUrl::fromLocalFile(text(track->string()));
        }
    }
    return files;
}

CallActions NoteModel::actions() const {
    return app_ != nullptr ? app_->callActions(*note_, files_) : CallActions();
}

const EmailDraft* NoteModel::email() const {
    return note_->call ? note_->call->email() : nullptr;
}

void NoteModel::editEmail(const std::function<void(EmailDraft&)>& change) {
    edit([&change](Note& note) {
        if (note.call && note.call->digest) {
            change(note.call->digest->email);
        }
    });
}

QString NoteModel::emailSubject() const {
    return hasEmail() ? text(email()->subject) : QString();
}

void NoteModel::setEmailSubject(const QString& subject) {
    editEmail([&subject](EmailDraft& email) { email.subject = subject.toStdString(); });
}

QString NoteModel::emailBody() const {
    return hasEmail() ? text(email()->body) : QString();
}

void NoteModel::setEmailBody(const QString& body) {
    editEmail([&body](EmailDraft& email) { email.body = body.toStdString(); });
}

QStringList NoteModel::exportTitles() {
    QStringList titles;
    for (const ExportFormat format : allExportFormats) {
        titles << text(std::string(varnic::title(format)) + "…");
    }
    return titles;
}

bool NoteModel::transcriptShown() const {
    return app_ != nullptr && isCall() && app_->showTranscript.value();
}

void NoteModel::setTranscriptShown(bool shown) {
    app_->showTranscript = shown;
}

void NoteModel::undo() {
    app_->undo(id_);
}

void NoteModel::redo() {
    app_->redo(id_);
}

void NoteModel::focusFirstBlock() {
    app_->update(id_, false, [](Note& note) {
        if (note.blocks.empty()) {
            NoteEditor::insert({}, std::nullopt, note, currentDate());
        }
    });
    if (!note_->blocks.empty()) {
        app_->focusBlock = note_->blocks.front().id;
    }
}

void NoteModel::exportAs(int format) {
    app_->exportNote(id_, allExportFormats.at(static_cast<std::size_t>(format)));
}

void NoteModel::exportAudio() {
    app_->exportAudio(id_);
}

void NoteModel::retranscribe() {
    app_->retranscribe(id_);
}

void NoteModel::bringBackEarlier() {
    app_->bringBackEarlier(id_);
}

void NoteModel::removeAudio() {
    app_->removeAudio(id_);
}

void NoteModel::togglePin() {
    app_->togglePin(id_);
}

void NoteModel::remove() {
    app_->remove(id_);
}

void NoteModel::copyEmail() {
    app_->copyEmail(id_);
}

void NoteModel::copyLink(double time) {
    app_->copyLink(id_, time >= 1 ? std::optional(time) : std::nullopt);
}

void NoteModel::openInMail() {
    app_->openInMail(id_);
}

} // namespace varnic

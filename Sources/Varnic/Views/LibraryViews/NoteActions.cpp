#include "Varnic/Views/LibraryViews/NoteActions.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Export/ExportFormat.h"

namespace varnic {

NoteActions* NoteActions::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new NoteActions(ViewContext::of(*engine).model);
}

void NoteActions::setNoteId(const QString& id) {
    id_ = Uuid::parse(id.toStdString());
    files_ = note() != nullptr ? model_.callFiles(*note()) : CallFiles();
    Q_EMIT noteIdChanged();
}

const Note* NoteActions::note() const {
    return model_.note(id_);
}

QString NoteActions::pinText() const {
    return note() != nullptr && note()->pinned ? QStringLiteral("Unpin") : QStringLiteral("Pin to Top");
}

CallActions NoteActions::actions() const {
    return note() != nullptr ? model_.callActions(*note(), files_) : CallActions();
}

QStringList NoteActions::exportTitles() {
    QStringList titles;
    for (const ExportFormat format : allExportFormats) {
        const std::string_view name = title(format);
        titles << QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())) + "…";
    }
    return titles;
}

void NoteActions::togglePin() {
    if (id_) {
        model_.togglePin(*id_);
    }
}

void NoteActions::exportAs(int index) {
    if (id_) {
        model_.exportNote(*id_, allExportFormats.at(static_cast<std::size_t>(index)));
    }
}

void NoteActions::transcribeAgain() {
    if (id_) {
        model_.retranscribe(*id_);
    }
}

void NoteActions::copyLink() {
    if (id_) {
        model_.copyLink(*id_);
    }
}

void NoteActions::remove() {
    if (id_) {
        model_.remove(*id_);
    }
}

} // namespace varnic

#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QStringList>
#include <QtQmlIntegration>

namespace varnic {

/// What can be done with one note of a list. Main thread.
class NoteActions : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// The note; what is on disk of it is looked up as it is set.
    Q_PROPERTY(QString noteId READ noteId WRITE setNoteId NOTIFY noteIdChanged)
    Q_PROPERTY(QString pinText READ pinText NOTIFY noteIdChanged)
    /// A call whose recording is there.
    Q_PROPERTY(bool hasAudio READ hasAudio NOTIFY noteIdChanged)
    Q_PROPERTY(bool canTranscribe READ canTranscribe NOTIFY noteIdChanged)
    /// The kinds of file that a note can be exported to.
    Q_PROPERTY(QStringList exportTitles READ exportTitles CONSTANT)

public:
    static NoteActions* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit NoteActions(AppModel& model, QObject* parent = nullptr) : QObject(parent), model_(model) {}

    [[nodiscard]] QString noteId() const { return id_ ? QString::fromStdString(id_->text()) : QString(); }

    void setNoteId(const QString& id);

    [[nodiscard]] QString pinText() const;

    [[nodiscard]] bool hasAudio() const { return actions().play; }

    [[nodiscard]] bool canTranscribe() const { return actions().transcribe; }

    [[nodiscard]] static QStringList exportTitles();

    Q_INVOKABLE void togglePin();
    Q_INVOKABLE void exportAs(int index);
    Q_INVOKABLE void transcribeAgain();
    /// What names the note to other programs.
    Q_INVOKABLE void copyLink();
    /// Moves the note to the deleted ones; the toast brings it back.
    Q_INVOKABLE void remove();

Q_SIGNALS:
    void noteIdChanged();

private:
    [[nodiscard]] const Note* note() const;
    [[nodiscard]] CallActions actions() const;

    AppModel& model_;
    std::optional<Uuid> id_;
    CallFiles files_;
};

} // namespace varnic

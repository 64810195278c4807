#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/Ink/CallInk.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <QtQmlIntegration>

#include <string>
#include <vector>

namespace varnic {

/// One note for its page, followed as it changes; blank where there is no note of that id. Main thread.
class NoteModel : public QObject, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    /// To be set once.
    Q_PROPERTY(QString noteId READ noteId WRITE setNoteId NOTIFY changed)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY changed)
    Q_PROPERTY(QString titlePlaceholder READ titlePlaceholder NOTIFY changed)
    Q_PROPERTY(bool isCall READ isCall NOTIFY changed)
    Q_PROPERTY(bool pinned READ pinned NOTIFY changed)
    /// The note of a running recording cannot be deleted.
    Q_PROPERTY(bool canDelete READ canDelete NOTIFY changed)
    /// Words, reading time and when it was edited.
    Q_PROPERTY(QStringList footer READ footer NOTIFY footerChanged)
    /// When the call was and how long it took.
    Q_PROPERTY(QString eyebrow READ eyebrow NOTIFY changed)
    Q_PROPERTY(QString yourName READ yourName NOTIFY changed)
    /// The other party's name as it was given, for its field.
    Q_PROPERTY(QString themName READ themName WRITE setThemName NOTIFY changed)
    /// Pixels.
    Q_PROPERTY(double nameFieldWidth READ nameFieldWidth NOTIFY changed)
    Q_PROPERTY(bool hasShare READ hasShare NOTIFY changed)
    /// Your part of the talking, 0 to 1.
    Q_PROPERTY(double share READ share NOTIFY changed)
    /// Your part of the talking, in whole percent.
    Q_PROPERTY(int sharePercent READ sharePercent NOTIFY changed)
    /// Who spoke when.
    Q_PROPERTY(varnic::CallInk ink READ ink NOTIFY transcriptChanged)
    /// The recordings that are on disk.
    Q_PROPERTY(QList<QUrl> tracks READ tracks NOTIFY changed)
    Q_PROPERTY(bool canExportAudio READ canExportAudio NOTIFY changed)
    Q_PROPERTY(bool canTranscribe READ canTranscribe NOTIFY changed)
    Q_PROPERTY(bool canRemoveAudio READ canRemoveAudio NOTIFY changed)
    Q_PROPERTY(bool hasEmail READ hasEmail NOTIFY changed)
    Q_PROPERTY(QString emailSubject READ emailSubject WRITE setEmailSubject NOTIFY changed)
    Q_PROPERTY(QString emailBody READ emailBody WRITE setEmailBody NOTIFY changed)
    /// The transcript and summary that the last new ones replaced are kept.
    Q_PROPERTY(bool hasEarlier READ hasEarlier NOTIFY changed)
    Q_PROPERTY(bool canBringBackEarlier READ canBringBackEarlier NOTIFY changed)
    /// One title for each kind of file that `exportAs` writes.
    Q_PROPERTY(QStringList exportTitles READ exportTitles CONSTANT)
    Q_PROPERTY(bool transcriptShown READ transcriptShown WRITE setTranscriptShown NOTIFY transcriptShownChanged)

public:
    explicit NoteModel(QObject* parent = nullptr);

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] const Note& note() const { return *note_; }

    [[nodiscard]] const Uuid& id() const { return id_; }

    /// Null before the element is complete.
    [[nodiscard]] AppModel* app() const { return app_; }

    /// What to call a side of the call.
    [[nodiscard]] std::string name(Speaker speaker) const;

    [[nodiscard]] QString noteId() const;
    void setNoteId(const QString& id);
    [[nodiscard]] QString title() const;
    void setTitle(const QString& title);
    [[nodiscard]] QString titlePlaceholder() const;

    [[nodiscard]] bool isCall() const { return note_->isCall(); }

    [[nodiscard]] bool pinned() const { return note_->pinned; }

    [[nodiscard]] bool canDelete() const;
    [[nodiscard]] QStringList footer() const;
    [[nodiscard]] QString eyebrow() const;
    [[nodiscard]] QString yourName() const;
    [[nodiscard]] QString themName() const;
    void setThemName(const QString& name);
    [[nodiscard]] double nameFieldWidth() const;
    [[nodiscard]] bool hasShare() const;
    [[nodiscard]] double share() const;
    [[nodiscard]] int sharePercent() const;

    [[nodiscard]] CallInk ink() const { return note_->call ? CallInk(*note_->call) : CallInk(); }

    [[nodiscard]] QList<QUrl> tracks() const;

    /// What may be done with the call; nothing before the element is complete.
    [[nodiscard]] CallActions actions() const;

    [[nodiscard]] bool canExportAudio() const { return actions().exportAudio; }

    [[nodiscard]] bool canTranscribe() const { return actions().transcribe; }

    [[nodiscard]] bool canRemoveAudio() const { return actions().removeAudio; }

    [[nodiscard]] bool hasEmail() const { return email() != nullptr; }

    [[nodiscard]] QString emailSubject() const;
    void setEmailSubject(const QString& subject);
    [[nodiscard]] QString emailBody() const;
    void setEmailBody(const QString& body);

    [[nodiscard]] bool hasEarlier() const { return files_.hasEarlier; }

    [[nodiscard]] bool canBringBackEarlier() const { return actions().bringBackEarlier; }

    [[nodiscard]] static QStringList exportTitles();
    [[nodiscard]] bool transcriptShown() const;
    void setTranscriptShown(bool shown);

    /// Takes the last edit of title and blocks back, or makes it again.
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    /// Asks the editor to go to the first block; makes one where there is none.
    Q_INVOKABLE void focusFirstBlock();
    Q_INVOKABLE void exportAs(int format);
    Q_INVOKABLE void exportAudio();
    Q_INVOKABLE void retranscribe();
    Q_INVOKABLE void bringBackEarlier();
    Q_INVOKABLE void removeAudio();
    Q_INVOKABLE void togglePin();
    Q_INVOKABLE void remove();
    Q_INVOKABLE void copyEmail();
    /// What names the note to other programs; the moment of its call, in seconds, too unless that is the beginning.
    Q_INVOKABLE void copyLink(double time);
    Q_INVOKABLE void openInMail();

Q_SIGNALS:
    /// Something of the note, or what the page says of it.
    void changed();
    /// A little later than what it counts, for it goes through the whole text.
    void footerChanged();
    /// The lines of the call, its length or the names of its sides.
    void transcriptChanged();
    void transcriptShownChanged();
    /// The call is to be shown from this many seconds on.
    void seekRequested(double time);

private:
    void refresh();
    void lookForFiles();
    void followProcessing();
    void takeSeek();
    [[nodiscard]] const EmailDraft* email() const;
    void edit(const std::function<void(Note&)>& change);
    void editEmail(const std::function<void(EmailDraft&)>& change);

    Uuid id_;
    /// Gone while the program ends.
    QPointer<AppModel> app_;
    /// Stands for a note that is not there.
    const SharedNote blank_;
    SharedNote note_;
    CallFiles files_;
    /// The call is being transcribed.
    bool isProcessed_ = false;
    std::vector<QPropertyNotifier> watchers_;
    /// "Edited 5 minutes ago" grows older by itself.
    QTimer clock_;
    QTimer footerDelay_;
};

} // namespace varnic

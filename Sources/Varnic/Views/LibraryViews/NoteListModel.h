#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/LibraryViews/NoteSummary.h"
#include "Varnic/Views/Rows/RowModel.h"

#include <QProperty>
#include <QQmlParserStatus>
#include <QTimer>
#include <QtQmlIntegration>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace varnic {

/// The notes of the section that the sidebar shows, with the running recording first. Dates keep up with the calendar.
class NoteListModel : public RowModel<NoteSummary>, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /// The row of the selected note; -1 where it is not among them.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged)
    /// The note of that row; empty without one, and for the running recording.
    Q_PROPERTY(QString currentId READ currentId NOTIFY currentRowChanged)

public:
    enum Role {
        noteId = Qt::UserRole,
        title,
        date,
        preview,
        cards,
        todos,
        length,
        stage,
        isCall,
        isPinned,
        hasTranscript,
        /// Who spoke when in a call, see CallInk.
        ink,
        isLive,
        spoken
    };

    explicit NoteListModel(QObject* parent = nullptr);

    /// Tests replace it before they set the model.
    std::function<Date()> now = currentDate;

    /// For use without QML.
    void setModel(AppModel& model);

    [[nodiscard]] int count() const { return rowCount(); }

    [[nodiscard]] int currentRow() const { return currentRow_; }

    [[nodiscard]] QString currentId() const;

    /// Selects the note of a row.
    Q_INVOKABLE void select(int row);
    /// Whether the key (Qt::Key) is one that moves the selection, which it then has done.
    Q_INVOKABLE bool moveByKey(int key, int rowsOnPage);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void classBegin() override {}

    void componentComplete() override;

    /// Puts the dates in words anew if the day has changed; looked at every minute.
    void followCalendar();
    /// Brings the list in line with the model, as at each change.
    void refresh();

Q_SIGNALS:
    void countChanged();
    void currentRowChanged();

private:
    /// The date of an edit in words, which hold as long as it is the same day.
    struct DateText {
        Date date;
        QString text;
    };

    void take(const ChangedNotes& changed);
    [[nodiscard]] bool changeInPlace(const Uuid& id);
    [[nodiscard]] std::vector<NoteSummary> summaries();
    [[nodiscard]] NoteSummary summary(const Note& note, Date moment);
    [[nodiscard]] QString dateText(const Note& note, Date moment);
    void refreshCurrentRow();

    AppModel* model_ = nullptr;
    LibrarySection section_ = LibrarySection::all;
    int currentRow_ = -1;
    std::chrono::local_days today_;
    std::map<Uuid, DateText> dates_;
    QTimer calendar_;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic

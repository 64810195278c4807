#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/AppModel/LibrarySearch.h"
#include "VarnicCore/Library/NoteHits.h"

#include <QAbstractListModel>
#include <QQmlParserStatus>
#include <QtQmlIntegration>

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace varnic {

/// What the search found: for each note a row with its title, and one for each hit. A search may find a row for every
/// line that was ever said, so rows are made as they are asked for. The results of the last query stay until there are
/// newer ones. Main thread.
class SearchResultsModel : public QAbstractListModel, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /// The rows are not yet what the query finds.
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY isSearchingChanged)

public:
    enum Role {
        isHeader = Qt::UserRole,
        noteId,
        /// A note's title, or the text that was found.
        text,
        /// The text with its matches marked, for Highlighter::richText.
        markedText,
        /// "2:05" for what was said in a call, else empty.
        stamp,
        /// In seconds; below 0 for what has no time.
        time
    };

    explicit SearchResultsModel(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    /// For use without QML.
    void setModel(AppModel& model);

    [[nodiscard]] int count() const { return static_cast<int>(rowCount_); }

    [[nodiscard]] bool isSearching() const { return isSearching_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void classBegin() override {}

    void componentComplete() override;

Q_SIGNALS:
    void countChanged();
    void isSearchingChanged();

private:
    /// A view asks for one role of a row after another.
    struct MadeHit {
        std::size_t row = 0;
        SearchHit hit;
    };

    void take();
    void show(std::shared_ptr<const FoundNotes> found);
    /// Which of the notes the row belongs to.
    [[nodiscard]] std::size_t placeOf(std::size_t row) const;
    /// The hit of a row; null for the row of a title.
    [[nodiscard]] const SearchHit* hitAt(std::size_t row) const;

    std::unique_ptr<LibrarySearch> search_;
    std::shared_ptr<const FoundNotes> found_;
    /// For each note, the row of its title.
    std::vector<std::size_t> firstRows_;
    std::size_t rowCount_ = 0;
    bool isSearching_ = false;
    /// The hits of the notes that were scrolled to, by their places.
    mutable std::map<std::size_t, NoteHits> hits_;
    mutable std::optional<MadeHit> lastHit_;
};

} // namespace varnic

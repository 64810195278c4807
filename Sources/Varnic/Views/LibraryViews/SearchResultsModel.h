#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QAbstractListModel>
#include <QProperty>
#include <QQmlParserStatus>
#include <QTimer>
#include <QtQmlIntegration>

#include <cstddef>
#include <memory>
#include <vector>

namespace varnic {

/// What the search found: for each note a row with its title, and one for each hit. A search may find a row for every
/// line that was ever said, so rows are made as they are asked for. Main thread.
class SearchResultsModel : public QAbstractListModel, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

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

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void classBegin() override {}

    void componentComplete() override;

Q_SIGNALS:
    void countChanged();

private:
    struct Result {
        Uuid note;
        QString title;
        std::shared_ptr<const std::vector<SearchHit>> hits;
        /// The row of the title.
        std::size_t firstRow = 0;
    };

    void search();
    [[nodiscard]] const Result& resultAt(std::size_t row) const;
    /// The hit of a row; null for the row of a title.
    [[nodiscard]] static const SearchHit* hitAt(const Result& result, std::size_t row);

    AppModel* model_ = nullptr;
    std::vector<Result> results_;
    std::size_t rowCount_ = 0;
    QTimer timer_;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic

#pragma once

#include <QAbstractListModel>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// The words of a line that are being written right now. Main thread.
class FreshInk : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a line of the transcript")

public:
    struct Word {
        /// Where it stands in the line's text.
        int from = 0;
        int to = 0;

        /// How long its writing takes, in milliseconds.
        [[nodiscard]] int duration() const;

        bool operator==(const Word&) const = default;
    };

    enum Role { from = Qt::UserRole, to, duration };

    using QAbstractListModel::QAbstractListModel;

    void setWords(std::vector<Word> words);

    [[nodiscard]] const std::vector<Word>& words() const { return words_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<Word> words_;
};

} // namespace varnic

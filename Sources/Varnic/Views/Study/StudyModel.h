#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QString>
#include <QtQmlIntegration>

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// A review of the cards that are due in the deck `AppModel::studyDeck`, one after another. Cards that come due
/// meanwhile wait for the next review; those that are deleted, or graded by another program, leave it. When the deck
/// goes, so does the review. Main thread.
class StudyModel : public QObject, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    /// "3 to go".
    Q_PROPERTY(QString toGo READ toGo NOTIFY changed)
    Q_PROPERTY(bool hasCard READ hasCard NOTIFY changed)
    /// Of the card that is asked; empty without one.
    Q_PROPERTY(QString question READ question NOTIFY changed)
    /// The answer that shows, or else the one that showed last.
    Q_PROPERTY(QString answer READ answer NOTIFY changed)
    /// Whether the answer shows.
    Q_PROPERTY(bool flipped READ isFlipped NOTIFY changed)
    /// The side that shows, with its name.
    Q_PROPERTY(QString spoken READ spoken NOTIFY changed)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    /// What stands in place of a card, and when the next one comes back; the latter is empty where none does.
    Q_PROPERTY(QString endTitle READ endTitle NOTIFY changed)
    Q_PROPERTY(QString comeback READ comeback NOTIFY changed)

public:
    /// The cases of Flashcards::Grade.
    enum Grade { Again, Good, Easy };
    Q_ENUM(Grade)

    using QObject::QObject;

    /// For use without QML.
    void setModel(AppModel& model);

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString toGo() const;

    [[nodiscard]] bool hasCard() const { return !queue_.empty(); }

    [[nodiscard]] QString question() const;

    [[nodiscard]] QString answer() const { return answer_; }

    [[nodiscard]] bool isFlipped() const { return isFlipped_; }

    [[nodiscard]] QString spoken() const;

    [[nodiscard]] bool canUndo() const { return !grades_.empty(); }

    /// How many grades were given, less those that were taken back.
    [[nodiscard]] int reviewed() const { return static_cast<int>(grades_.size()); }

    [[nodiscard]] QString endTitle() const;
    [[nodiscard]] QString comeback() const;

    Q_INVOKABLE void flip();
    /// Grades the card that is asked and goes on to the next. Nothing while its answer is hidden.
    Q_INVOKABLE void grade(varnic::StudyModel::Grade grade);
    /// Takes the last grade back and asks its card again, with the answer showing. What another program has made of the
    /// card's schedule since then stays.
    Q_INVOKABLE void undo();
    /// Does what a key (Qt::Key, Qt::KeyboardModifiers) stands for; whether it stands for something.
    Q_INVOKABLE bool press(int key, int modifiers);
    /// Ends the review.
    Q_INVOKABLE void close();

Q_SIGNALS:
    void changed();

private:
    using Schedule = std::optional<CardState>;

    struct QueuedCard {
        Uuid id;
        /// As it was last seen.
        Schedule schedule;
    };

    struct GivenGrade {
        Uuid card;
        Schedule before;
        Schedule after;
    };

    void begin();
    void tell();
    void take(const ChangedNotes& notes);
    [[nodiscard]] const Note* deck() const;
    [[nodiscard]] const Block* card(const Uuid& id) const;
    [[nodiscard]] std::optional<Uuid> askedId() const;
    [[nodiscard]] std::string side(std::string Block::* words) const;

    AppModel* model_ = nullptr;
    Uuid deckId_;
    std::deque<QueuedCard> queue_;
    bool isFlipped_ = false;
    QString answer_;
    /// One for each that was given, the last one at the end.
    std::vector<GivenGrade> grades_;
    /// The note changes by what is done here.
    bool isOwnChange_ = false;
    QPropertyNotifier deckWatcher_;
};

} // namespace varnic

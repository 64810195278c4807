#include "Varnic/Views/Study/StudyModel.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/Study/DueDay.h"
#include "VarnicCore/Editor/NoteEditor.h"

#include <QScopedValueRollback>

#include <fmt/format.h>

#include <algorithm>

namespace varnic {

void StudyModel::componentComplete() {
    setModel(ViewContext::of(this).model);
}

void StudyModel::setModel(AppModel& model) {
    model_ = &model;
    connect(&model, &AppModel::notesChanged, this, &StudyModel::take);
    deckWatcher_ = model.studyDeck.addNotifier([this] { begin(); });
    begin();
}

void StudyModel::begin() {
    const std::optional<Uuid> chosen = model_->studyDeck.value();
    if (!chosen || *chosen == deckId_) {
        return;
    }
    deckId_ = *chosen;
    queue_.clear();
    grades_.clear();
    isFlipped_ = false;
    answer_.clear();
    if (const Note* note = deck()) {
        for (const Block& due : Flashcards::dueCards(*note, currentDate())) {
            queue_.push_back({due.id, due.card});
        }
    }
    tell();
}

const Note* StudyModel::deck() const {
    return model_ == nullptr ? nullptr : model_->note(deckId_);
}

/// Null for what is no card, or no longer.
const Block* StudyModel::card(const Uuid& id) const {
    const Note* note = deck();
    if (note == nullptr) {
        return nullptr;
    }
    const auto found = std::ranges::find(note->blocks, id, &Block::id);
    const bool isCard = found != note->blocks.end() && found->kind == BlockKind::flashcard && !found->text.empty();
    return isCard ? &*found : nullptr;
}

std::optional<Uuid> StudyModel::askedId() const {
    return queue_.empty() ? std::nullopt : std::optional(queue_.front().id);
}

void StudyModel::take(const ChangedNotes& notes) {
    if (isOwnChange_ || !concerns(notes, deckId_)) {
        return;
    }
    if (deck() == nullptr) {
        queue_.clear();
        grades_.clear();
        isFlipped_ = false;
        tell();
        close();
        return;
    }
    const auto asked = askedId();
    std::erase_if(queue_, [this, now = currentDate()](QueuedCard& queued) {
        const Block* block = card(queued.id);
        const bool isGone = block == nullptr || (block->card != queued.schedule && !Flashcards::isDue(*block, now));
        if (!isGone) {
            queued.schedule = block->card;
        }
        return isGone;
    });
    if (askedId() != asked) {
        isFlipped_ = false;
    }
    tell();
}

QString StudyModel::title() const {
    const Note* note = deck();
    return note == nullptr ? QString() : QString::fromStdString(note->displayTitle()).simplified();
}

QString StudyModel::toGo() const {
    return QString::number(queue_.size()) + " to go";
}

std::string StudyModel::side(std::string Block::* words) const {
    const Block* asked = queue_.empty() ? nullptr : card(queue_.front().id);
    return asked == nullptr ? std::string() : asked->*words;
}

QString StudyModel::question() const {
    return QString::fromStdString(side(&Block::text));
}

/// An answer stays as it was while its card turns away, for the next one is not to be seen yet.
void StudyModel::tell() {
    if (isFlipped_) {
        answer_ = QString::fromStdString(side(&Block::back));
    }
    Q_EMIT changed();
}

QString StudyModel::spoken() const {
    return isFlipped_ ? "Answer: " + answer() : "Question: " + question();
}

QString StudyModel::endTitle() const {
    return grades_.empty() ? QStringLiteral("Nothing due right now")
                           : QString::fromStdString(fmt::format("All caught up — {} reviewed", reviewed()));
}

QString StudyModel::comeback() const {
    const Note* note = deck();
    const Date now = currentDate();
    const auto due = note == nullptr ? std::nullopt : Flashcards::nextDue(*note, now);
    return due ? QString::fromStdString(fmt::format("The next one is due {}.", dueDay(*due, now, model_->region)))
               : QString();
}

void StudyModel::flip() {
    if (hasCard()) {
        isFlipped_ = !isFlipped_;
        tell();
    }
}

void StudyModel::grade(Grade grade) {
    if (!hasCard() || !isFlipped_) {
        return;
    }
    const Uuid id = queue_.front().id;
    const Schedule before = card(id)->card;
    {
        const QScopedValueRollback own(isOwnChange_, true);
        model_->grade(deckId_, id, static_cast<Flashcards::Grade>(grade));
    }
    const Schedule after = card(id)->card;
    grades_.push_back({id, before, after});
    queue_.pop_front();
    if (grade == Again) {
        queue_.push_back({id, after});
    }
    isFlipped_ = false;
    tell();
}

void StudyModel::undo() {
    if (grades_.empty()) {
        return;
    }
    const GivenGrade last = grades_.back();
    grades_.pop_back();
    std::erase_if(queue_, [&last](const QueuedCard& queued) { return queued.id == last.card; });
    const Block* block = card(last.card);
    if (block != nullptr && block->card == last.after) {
        const QScopedValueRollback own(isOwnChange_, true);
        model_->update(deckId_, true, [&last](Note& note) {
            NoteEditor::update(last.card, note, currentDate(), [&last](Block& graded) { graded.card = last.before; });
        });
    }
    if (block = card(last.card); block != nullptr) {
        queue_.push_front({last.card, block->card});
    }
    isFlipped_ = block != nullptr;
    tell();
}

bool StudyModel::press(int key, int modifiers) {
    const auto held = Qt::KeyboardModifiers::fromInt(static_cast<unsigned>(modifiers));
    if (key == Qt::Key_Z && held == Qt::ControlModifier) {
        undo();
        return true;
    }
    if (!hasCard()) {
        return false;
    }
    if (key == Qt::Key_Space && held == Qt::NoModifier) {
        if (!isFlipped_) {
            flip();
        }
        return true;
    }
    // Digits stand on a block of their own too, and on some layouts behind Shift.
    if ((held & ~(Qt::KeypadModifier | Qt::ShiftModifier)) != Qt::NoModifier) {
        return false;
    }
    switch (key) {
    case Qt::Key_1:
        grade(Again);
        return true;
    case Qt::Key_2:
        grade(Good);
        return true;
    case Qt::Key_3:
        grade(Easy);
        return true;
    default:
        return false;
    }
}

void StudyModel::close() {
    model_->studyDeck = std::nullopt;
}

} // namespace varnic

#include "Varnic/Views/Ink/FreshInk.h"

#include <algorithm>
#include <cmath>

namespace varnic {

int FreshInk::Word::duration() const {
    constexpr double base = 120;
    constexpr double aLetter = 45;
    constexpr double longest = 600;
    return static_cast<int>(std::min(base + aLetter * (to - from), longest));
}

void FreshInk::setWords(std::vector<Word> words) {
    if (words.empty() && words_.empty()) {
        return;
    }
    beginResetModel();
    words_ = std::move(words);
    endResetModel();
}

int FreshInk::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(words_.size());
}

QVariant FreshInk::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Word& word = words_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case from:
        return word.from;
    case to:
        return word.to;
    case duration:
        return word.duration();
    default:
        return {};
    }
}

QHash<int, QByteArray> FreshInk::roleNames() const {
    return {{from, "from"}, {to, "to"}, {duration, "duration"}};
}

} // namespace varnic

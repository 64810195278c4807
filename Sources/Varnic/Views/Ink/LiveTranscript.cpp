#include "Varnic/Views/Ink/LiveTranscript.h"

#include "Varnic/Views/Ink/FreshWords.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Transcript/Diarisation.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <ranges>
#include <set>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// A pause of a speaker that ends a turn, in seconds.
constexpr double turnGap = 2.5;
/// Longer than any word takes to be written.
constexpr auto dryingTime = 700ms;

QString label(Speaker speaker, double start, const QString& text) {
    const std::string_view name = varnic::label(speaker);
    return QStringLiteral("%1, %2: %3")
        .arg(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())),
             QString::fromStdString(Clock::stamp(start)), text);
}

struct SpokenWord {
    std::size_t row = 0;
    FreshInk::Word place;
    QString key;
};

void appendWords(std::size_t row, const QString& text, std::vector<SpokenWord>& words) {
    for (const QStringView word : QStringView(text).split(u' ', Qt::SkipEmptyParts)) {
        const auto from = static_cast<int>(word.data() - text.constData());
        words.push_back(
            {.row = row, .place = {.from = from, .to = from + static_cast<int>(word.size())}, .key = wordKey(word)});
    }
}

} // namespace

LiveTranscript::LiveTranscript(QObject* parent) : QAbstractListModel(parent) {
    drying_.setSingleShot(true);
    drying_.setInterval(dryingTime);
    connect(&drying_, &QTimer::timeout, this, &LiveTranscript::dry);
}

void LiveTranscript::show(const std::vector<Segment>& committed,
                          const std::map<Speaker, std::vector<Segment>>& unfinished) {
    const int before = count();
    replace(turns(committed, unfinished));
    findFreshWords();
    if (count() != before) {
        Q_EMIT countChanged();
    }
}

std::vector<LiveTranscript::Row> LiveTranscript::turns(const std::vector<Segment>& committed,
                                                       const std::map<Speaker, std::vector<Segment>>& unfinished) {
    std::vector<Segment> lines = committed;
    std::set<Uuid> open;
    for (const Segment& line : unfinished | std::views::values | std::views::join) {
        lines.push_back(line);
        open.insert(line.id);
    }
    std::erase_if(lines, [](const Segment& line) { return line.text.empty(); });
    std::ranges::stable_sort(lines, {}, &Segment::start);
    std::vector<Row> rows;
    auto line = lines.begin();
    for (const Segment& turn : Diarisation::turns(lines, turnGap)) {
        // A turn is its lines with a blank between them.
        std::size_t length = 0;
        std::size_t firm = 0;
        for (bool isFirm = true; length < turn.text.size(); ++line) {
            length += (length > 0 ? 1 : 0) + line->text.size();
            isFirm = isFirm && !open.contains(line->id);
            firm = isFirm ? length : firm;
        }
        const auto firmText = QString::fromUtf8(turn.text.data(), static_cast<qsizetype>(firm));
        rows.push_back({.speaker = turn.speaker,
                        .start = turn.start,
                        .text = QString::fromStdString(turn.text),
                        .firm = static_cast<int>(firmText.size())});
    }
    return rows;
}

/// Changes as little as it can: rows at both ends that stay the same are left alone, and those between are changed in
/// place as far as there are as many.
void LiveTranscript::replace(std::vector<Row> rows) {
    const auto shown = rows_ | std::views::transform(&ShownRow::row);
    const auto head = std::ranges::mismatch(shown, rows).in2 - rows.begin();
    const auto room = std::min(rows_.size(), rows.size()) - static_cast<std::size_t>(head);
    std::size_t tail = 0;
    while (tail < room && rows_[rows_.size() - 1 - tail].row == rows[rows.size() - 1 - tail]) {
        ++tail;
    }
    const auto first = static_cast<std::size_t>(head);
    const std::size_t changed = room - tail;
    for (std::size_t i = first; i < first + changed; ++i) {
        rows_[i].row = rows[i];
        rows_[i].fresh->setWords({});
    }
    if (changed > 0) {
        Q_EMIT dataChanged(index(static_cast<int>(first)), index(static_cast<int>(first + changed - 1)));
    }
    const std::size_t next = first + changed;
    if (rows_.size() > rows.size()) {
        remove(static_cast<int>(next), static_cast<int>(rows_.size() - rows.size()));
    } else if (rows.size() > rows_.size()) {
        const auto from = rows.begin() + static_cast<std::ptrdiff_t>(next);
        insert(static_cast<int>(next), {from, from + static_cast<std::ptrdiff_t>(rows.size() - rows_.size())});
    }
}

void LiveTranscript::insert(int at, std::vector<Row> rows) {
    beginInsertRows({}, at, at + static_cast<int>(rows.size()) - 1);
    std::vector<ShownRow> added;
    for (Row& row : rows) {
        added.push_back({.row = std::move(row), .fresh = std::make_unique<FreshInk>()});
    }
    rows_.insert(rows_.begin() + at, std::move_iterator(added.begin()), std::move_iterator(added.end()));
    endInsertRows();
}

void LiveTranscript::remove(int from, int count) {
    beginRemoveRows({}, from, from + count - 1);
    for (int i = from; i < from + count; ++i) {
        // A view may still be drawing with it.
        rows_[static_cast<std::size_t>(i)].fresh.release()->deleteLater();
    }
    rows_.erase(rows_.begin() + from, rows_.begin() + from + count);
    endRemoveRows();
}

void LiveTranscript::findFreshWords() {
    std::map<std::size_t, std::vector<FreshInk::Word>> wet;
    for (const Speaker speaker : allSpeakers) {
        std::vector<SpokenWord> words;
        for (std::size_t row = 0; row < rows_.size(); ++row) {
            if (rows_[row].row.speaker == speaker) {
                appendWords(row, rows_[row].row.text, words);
            }
        }
        QStringList keys;
        std::ranges::transform(words, std::back_inserter(keys), &SpokenWord::key);
        const std::vector<bool> fresh = freshWords(read_[speaker], keys);
        for (std::size_t i = 0; i < words.size(); ++i) {
            if (fresh[i]) {
                wet[words[i].row].push_back(words[i].place);
            }
        }
        read_[speaker] = keys;
    }
    for (auto& [row, words] : wet) {
        rows_[row].fresh->setWords(std::move(words));
    }
    if (!wet.empty()) {
        drying_.start();
    }
}

void LiveTranscript::dry() {
    for (const ShownRow& row : rows_) {
        row.fresh->setWords({});
    }
}

int LiveTranscript::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant LiveTranscript::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto& [row, fresh] = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case NameRole:
        return QString::fromStdString(std::string(varnic::label(row.speaker)));
    case IsYouRole:
        return row.speaker == Speaker::you;
    case StampRole:
        return QString::fromStdString(Clock::stamp(row.start));
    case SpokenRole:
        return row.text;
    case FirmRole:
        return row.firm;
    case FreshRole:
        return QVariant::fromValue(fresh.get());
    case LabelRole:
        return label(row.speaker, row.start, row.text);
    default:
        return {};
    }
}

QHash<int, QByteArray> LiveTranscript::roleNames() const {
    return {{NameRole, "name"}, {IsYouRole, "isYou"}, {StampRole, "stamp"}, {SpokenRole, "spoken"},
            {FirmRole, "firm"}, {FreshRole, "fresh"}, {LabelRole, "label"}};
}

} // namespace varnic

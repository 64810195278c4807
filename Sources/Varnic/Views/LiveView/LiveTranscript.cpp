#include "Varnic/Views/LiveView/LiveTranscript.h"

#include "Varnic/Views/LiveView/FreshWords.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Transcript/Diarisation.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <ranges>
#include <set>
#include <utility>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// A pause of a speaker that ends a turn, in seconds.
constexpr double turnGap = 2.5;
/// Longer than any word takes to be written.
constexpr auto dryingTime = 700ms;

QString spokenTurn(Speaker speaker, double start, const QString& text) {
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

std::vector<LiveTurnRow> turns(const std::vector<Segment>& committed,
                               const std::map<Speaker, std::vector<Segment>>& unfinished) {
    std::map<Speaker, std::vector<Segment>> sides;
    std::set<Uuid> open;
    for (const Segment& line : committed) {
        sides[line.speaker].push_back(line);
    }
    for (const Segment& line : unfinished | std::views::values | std::views::join) {
        sides[line.speaker].push_back(line);
        open.insert(line.id);
    }
    const std::vector<Segment> lines = Diarisation::merge(sides[Speaker::you], sides[Speaker::them]);
    std::vector<LiveTurnRow> rows;
    std::map<Speaker, int> counted;
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
        rows.push_back({.id = {.speaker = turn.speaker, .number = counted[turn.speaker]++},
                        .start = turn.start,
                        .text = QString::fromStdString(turn.text),
                        .firm = static_cast<int>(firmText.size())});
    }
    return rows;
}

} // namespace

LiveTranscript::LiveTranscript(QObject* parent) : RowModel<LiveTurnRow>(parent) {
    connect(this, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& first, const QModelIndex& last) { wipe(first.row(), last.row()); });
    connect(this, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex& /*parent*/, int first, int last) { wipe(first, last); });
    drying_.setSingleShot(true);
    drying_.setInterval(dryingTime);
    connect(&drying_, &QTimer::timeout, this, &LiveTranscript::dry);
}

void LiveTranscript::show(const std::vector<Segment>& committed,
                          const std::map<Speaker, std::vector<Segment>>& unfinished) {
    const int before = count();
    setRows(turns(committed, unfinished));
    findFreshWords();
    if (count() != before) {
        Q_EMIT countChanged();
    }
}

void LiveTranscript::wipe(int firstRow, int lastRow) {
    for (int row = firstRow; row <= lastRow; ++row) {
        FreshInk*& ink = inks_[rows()[static_cast<std::size_t>(row)].id];
        if (ink == nullptr) {
            ink = new FreshInk(this);
        }
        ink->setWords({});
    }
}

void LiveTranscript::findFreshWords() {
    std::map<std::size_t, std::vector<FreshInk::Word>> wet;
    for (const Speaker speaker : allSpeakers) {
        std::vector<SpokenWord> said;
        for (std::size_t row = 0; row < rows().size(); ++row) {
            if (rows()[row].id.speaker == speaker) {
                appendWords(row, rows()[row].text, said);
            }
        }
        QStringList keys;
        std::ranges::transform(said, std::back_inserter(keys), &SpokenWord::key);
        const std::vector<bool> isFresh = freshWords(read_[speaker], keys);
        for (std::size_t i = 0; i < said.size(); ++i) {
            if (isFresh[i]) {
                wet[said[i].row].push_back(said[i].place);
            }
        }
        read_[speaker] = keys;
    }
    for (auto& [row, places] : wet) {
        inks_.at(rows()[row].id)->setWords(std::move(places));
    }
    if (!wet.empty()) {
        drying_.start();
    }
}

void LiveTranscript::dry() {
    for (FreshInk* ink : inks_ | std::views::values) {
        ink->setWords({});
    }
}

QVariant LiveTranscript::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const LiveTurnRow& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case name:
        return QString::fromStdString(std::string(varnic::label(row.id.speaker)));
    case isYou:
        return row.id.speaker == Speaker::you;
    case stamp:
        return QString::fromStdString(Clock::stamp(row.start));
    case words:
        return row.text;
    case firm:
        return row.firm;
    case fresh:
        return QVariant::fromValue(inks_.at(row.id));
    case spoken:
        return spokenTurn(row.id.speaker, row.start, row.text);
    default:
        return {};
    }
}

QHash<int, QByteArray> LiveTranscript::roleNames() const {
    return {{name, "name"}, {isYou, "isYou"}, {stamp, "stamp"},  {words, "words"},
            {firm, "firm"}, {fresh, "fresh"}, {spoken, "spoken"}};
}

} // namespace varnic

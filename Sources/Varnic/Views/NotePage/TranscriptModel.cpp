#include "Varnic/Views/NotePage/TranscriptModel.h"

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Transcript/Diarisation.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnic {

namespace {

/// A turn that begins this soon, in seconds, is begun: a seek to its start may end up a sample before it.
constexpr double tolerance = 0.01;

/// How much of a text comes before a place in it, 0 to 1.
double part(std::size_t place, const std::string& text) {
    return place < text.size() ? static_cast<double>(place) / static_cast<double>(text.size()) : 0;
}

} // namespace

void TranscriptModel::componentComplete() {
    connect(note_, &NoteModel::transcriptChanged, this, &TranscriptModel::readTurns);
    watchers_.push_back(ViewContext::of(this).model.processing.addNotifier([this] { Q_EMIT changed(); }));
    readTurns();
}

void TranscriptModel::readTurns() {
    turns_.clear();
    lines_.clear();
    if (const auto& call = note_->note().call; call && note_->app() != nullptr) {
        const std::string yours = note_->name(Speaker::you);
        const std::string theirs = note_->name(Speaker::them);
        lines_ = call->segments;
        for (Segment& turn : Diarisation::turns(lines_, Diarisation::turnGap)) {
            const std::string& speaker = turn.speaker == Speaker::you ? yours : theirs;
            turns_.push_back({.row = {std::move(turn), speaker}, .folded = {}});
        }
    }
    show();
}

void TranscriptModel::show() {
    const std::string needle = TextKit::fold(filter_.toStdString());
    std::vector<TurnRow> shown;
    for (Turn& turn : turns_) {
        if (!needle.empty() && turn.folded.empty()) {
            turn.folded = TextKit::fold(turn.row.text);
        }
        if (turn.folded.find(needle) != std::string::npos) {
            shown.push_back(turn.row);
            shown.back().isCurrent = playerIsIn(turn.row);
        }
    }
    setRows(shown);
    Q_EMIT changed();
    markPosition();
}

bool TranscriptModel::playerIsIn(const TurnRow& row) const {
    return row.start <= time_ && time_ < row.end + Diarisation::turnAfterglow;
}

int TranscriptModel::rowAt(double time) const {
    const auto last = std::find_if(rows().rbegin(), rows().rend(),
                                   [time](const TurnRow& row) { return row.start <= time + tolerance; });
    return static_cast<int>(rows().rend() - last) - 1;
}

void TranscriptModel::markPosition() {
    for (std::size_t i = 0; i < rows().size(); ++i) {
        if (const bool is = playerIsIn(rows()[i]); is != rows()[i].isCurrent) {
            TurnRow row = rows()[i];
            row.isCurrent = is;
            changeRow(i, std::move(row));
        }
    }
    const int row = playing_ ? rowAt(time_) : -1;
    const double part = partAt(time_, row);
    const bool isElsewhere = std::exchange(followedPart_, part) != part;
    if (row != followedRow_) {
        followedRow_ = row;
        Q_EMIT followedRowChanged();
    } else if (isElsewhere) {
        Q_EMIT followedPartChanged();
    }
}

/// One that there is.
const TranscriptModel::Turn& TranscriptModel::turnOf(int row) const {
    const Uuid& id = rows()[static_cast<std::size_t>(row)].id;
    return *std::ranges::find(turns_, id, [](const Turn& turn) { return turn.row.id; });
}

double TranscriptModel::partAt(double time, int row) const {
    if (row < 0) {
        return 0;
    }
    const Segment& turn = turnOf(row).row;
    return part(Diarisation::placeIn(turn, lines_, time + tolerance), turn.text);
}

double TranscriptModel::foundPart(int row) const {
    const std::string& text = turnOf(row).folded;
    return part(text.find(TextKit::fold(filter_.toStdString())), text);
}

double TranscriptModel::fromMiddle(double part, double turnHeight, double viewHeight) {
    const double room = std::max((turnHeight - viewHeight) / 2, 0.0);
    return std::clamp((part - 0.5) * turnHeight, -room, room);
}

void TranscriptModel::setFilter(const QString& filter) {
    if (filter != filter_) {
        filter_ = filter;
        show();
        if (!filter_.isEmpty() && !rows().empty()) {
            Q_EMIT found();
        }
    }
}

void TranscriptModel::setTime(double time) {
    if (time != time_) {
        time_ = time;
        markPosition();
        Q_EMIT positionChanged();
    }
}

void TranscriptModel::setPlaying(bool playing) {
    if (playing != playing_) {
        playing_ = playing;
        markPosition();
        Q_EMIT positionChanged();
    }
}

QString TranscriptModel::countText() const {
    return QString::fromStdString(fmt::format("{} turns", rows().size()));
}

QString TranscriptModel::placeholder() const {
    if (!turns_.empty() || !note_ || note_->app() == nullptr) {
        return {};
    }
    return note_->app()->processing.value().contains(note_->id()) ? "Writing the transcript…" : "No one was heard.";
}

QVariant TranscriptModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const TurnRow& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case isYou:
        return row.speaker == Speaker::you;
    case name:
        return QString::fromStdString(row.name);
    case start:
        return row.start;
    case stamp:
        return QString::fromStdString(Clock::stamp(row.start));
    case words:
        return QString::fromStdString(row.text);
    case isCurrent:
        return row.isCurrent;
    default:
        return {};
    }
}

QHash<int, QByteArray> TranscriptModel::roleNames() const {
    return {{isYou, "isYou"}, {name, "name"},   {start, "start"},
            {stamp, "stamp"}, {words, "words"}, {isCurrent, "isCurrent"}};
}

} // namespace varnic

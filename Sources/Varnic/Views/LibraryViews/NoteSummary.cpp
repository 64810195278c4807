#include "Varnic/Views/LibraryViews/NoteSummary.h"

#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Models/Wording.h"

#include <QStringList>

#include <algorithm>
#include <chrono>
#include <string_view>

namespace varnic {

namespace {

/// Bytes that fill two lines of the widest list.
constexpr std::size_t previewLength = 240;

void append(std::string& preview, std::string_view text) {
    const auto isBlank = [](char letter) { return letter == ' ' || letter == '\n' || letter == '\t'; };
    if (std::ranges::all_of(text, isBlank)) {
        return;
    }
    if (!preview.empty()) {
        preview += ' ';
    }
    preview += text.substr(0, previewLength);
}

/// The first texts of a note in one line. A character that is cut in two at its end does no harm: the line is longer
/// than what shows.
QString previewOf(const Note& note) {
    std::string preview;
    for (const Block& block : note.blocks) {
        if (preview.size() >= previewLength) {
            break;
        }
        if (isTextual(block.kind)) {
            append(preview, block.text);
        } else if (block.kind == BlockKind::table && !block.rows.empty()) {
            for (const std::string& cell : block.rows.front()) {
                append(preview, cell);
            }
        }
    }
    return preview.empty() ? QStringLiteral("Empty note") : QString::fromStdString(preview).simplified();
}

bool isOpen(const Block& block) {
    return block.kind == BlockKind::todo && !block.done && !block.text.empty();
}

bool isCard(const Block& block) {
    return block.kind == BlockKind::flashcard && !block.text.empty();
}

QString countedOrNone(std::ptrdiff_t count, const char* noun) {
    return count == 0 ? QString() : NoteSummaries::counted(static_cast<std::size_t>(count), noun);
}

} // namespace

QString NoteSummary::spoken() const {
    QStringList parts{title};
    if (isPinned) {
        parts << QStringLiteral("pinned");
    }
    for (const QString& part : {date, stage, length, todos, cards, preview}) {
        if (!part.isEmpty()) {
            parts << part;
        }
    }
    return parts.join(", ");
}

std::string NoteSummaries::relative(Date date, Date now, const Region& region) {
    const auto day = region.day(date);
    const auto today = region.day(now);
    if (day == today) {
        return region.format(date, "HH:mm");
    }
    if (day == today - std::chrono::days(1)) {
        return "Yesterday";
    }
    const bool isThisYear = std::chrono::year_month_day(day).year() == std::chrono::year_month_day(today).year();
    return region.format(date, isThisYear ? "d MMM" : "d MMM yyyy");
}

QString NoteSummaries::counted(std::size_t count, const char* noun) {
    return QString::number(count) + ' ' + noun + (count == 1 ? "" : "s");
}

NoteSummary NoteSummaries::of(const Note& note, std::optional<ProcessingStage> stage) {
    NoteSummary summary;
    summary.id = note.id;
    summary.created = note.created;
    summary.title = QString::fromStdString(note.displayTitle()).simplified();
    summary.cards = countedOrNone(std::ranges::count_if(note.blocks, isCard), "card");
    summary.isPinned = note.pinned;
    if (note.call) {
        summary.isCall = true;
        summary.lines = note.call->segments.size();
        summary.duration = note.call->duration;
        summary.length = QString::fromStdString(Clock::length(note.call->duration));
        summary.todos = countedOrNone(std::ranges::count_if(note.blocks, isOpen), "to-do");
    } else {
        summary.preview = previewOf(note);
    }
    if (stage) {
        summary.stage = QString::fromStdString(Wording::shown(stage->label()));
    }
    return summary;
}

} // namespace varnic

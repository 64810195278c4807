#pragma once

#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Pipeline/ProcessingStage.h"

#include <QMetaType>
#include <QString>
#include <QtQmlIntegration>

#include <cstddef>
#include <optional>
#include <string>

namespace varnic {

/// One note as the list shows it, all in words.
struct NoteSummary {
    Uuid id;
    QString title;
    /// When it was edited, see `relative`.
    QString date;
    /// By which the list is ordered.
    Date created;
    /// What a plain note says; empty for a call.
    QString preview;
    /// "2 cards"; empty without cards.
    QString cards;
    /// "1 to-do"; empty where none is open, and for a plain note.
    QString todos;
    /// How long a call was; empty for a plain note.
    QString length;
    /// What is being done to a call; empty when nothing is.
    QString stage;
    bool isCall = false;
    bool isPinned = false;
    /// The lines of a call's transcript and its seconds: with them its ink changes.
    std::size_t lines = 0;
    double duration = 0;
    /// Stands for the recording that runs.
    bool isLive = false;

    /// All of it in one line, for screen readers.
    [[nodiscard]] QString spoken() const;

    bool operator==(const NoteSummary&) const = default;
};

namespace NoteSummaries {

/// When something happened, seen from today: "14:05", "Yesterday", "3 May", "3 May 2024".
std::string relative(Date date, Date now, const Region& region);

/// "1 card", "2 cards", "0 cards".
QString counted(std::size_t count, const char* noun);

/// The note in words, but for the date, which takes the region to tell.
NoteSummary of(const Note& note, std::optional<ProcessingStage> stage);

} // namespace NoteSummaries

} // namespace varnic

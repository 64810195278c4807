#pragma once

#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Speaker.h"
#include "VarnicCore/Models/Uuid.h"

#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// A to-do found in a call.
struct ActionItem {
    Uuid id = Uuid::random();
    std::string text;
    std::optional<Speaker> owner;
    /// The due date in words.
    std::optional<std::string> due;
    /// The moment in the call at which it was said, in seconds.
    std::optional<double> at;

    bool operator==(const ActionItem&) const = default;
};

/// A follow-up mail.
struct EmailDraft {
    std::string subject;
    std::string body;

    bool operator==(const EmailDraft&) const = default;
};

/// The summary of a call.
struct CallDigest {
    /// The suggested title of the note.
    std::string title;
    /// The key sentences.
    std::vector<std::string> summary;
    std::vector<ActionItem> actions;
    EmailDraft email;
    /// The label of what made the digest.
    std::string provider;
    /// Made on this computer.
    bool isLocal = true;
    Date createdAt;

    bool operator==(const CallDigest&) const = default;
};

/// The call part of a note.
struct CallRecord {
    Date startedAt;
    /// Seconds.
    double duration = 0;
    /// The label of the calling application, or "Call".
    std::string source;
    /// Sorted by time.
    std::vector<Segment> segments;
    std::optional<CallDigest> digest;
    /// The name of the folder that keeps the audio; absent when none is kept.
    std::optional<std::string> audioFolder;
    /// Which tracks were recorded.
    std::vector<Speaker> tracks;
    /// The other party's name; may be empty.
    std::string themName;
    /// The locale identifier of the language that it is written down in.
    std::string language = "en-US";
    /// A sentence to show in place of the summary when processing fell short.
    std::optional<std::string> problem;

    /// What to call a speaker: `yourName` as given, or the other party's name, "Them" when that is blank.
    [[nodiscard]] std::string name(Speaker speaker, const std::string& yourName) const;

    /// The follow-up mail of its digest; null where there is none. One that was emptied is one still, but this computer
    /// drafts none for calls in other languages than English.
    [[nodiscard]] const EmailDraft* email() const;

    /// The part of all speech that is yours, 0 to 1; absent when nothing was said.
    [[nodiscard]] std::optional<double> yourShare() const;

    bool operator==(const CallRecord&) const = default;
};

} // namespace varnic

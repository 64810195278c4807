#include "VarnicCore/Export/ExportParts.h"

#include "VarnicCore/Transcript/Diarisation.h"

namespace varnic::ExportParts {

namespace {

/// Turns of one speaker that lie no further apart than this, in seconds, are one paragraph of the transcript.
constexpr double turnGap = 2.0;

} // namespace

std::string nameOf(Speaker speaker, const Note& note, const ExportOptions& options) {
    return note.call ? note.call->name(speaker, options.yourName) : CallRecord{}.name(speaker, options.yourName);
}

const EmailDraft* email(const Note& note, const ExportOptions& options) {
    const bool isThere =
        options.includeEmail && note.call && note.call->digest && !note.call->digest->email.body.empty();
    return isThere ? &note.call->digest->email : nullptr;
}

std::vector<Segment> transcript(const Note& note, const ExportOptions& options) {
    if (!options.includeTranscript || !note.call) {
        return {};
    }
    return Diarisation::turns(note.call->segments, turnGap);
}

} // namespace varnic::ExportParts

#include "Varnic/DemoData/DemoData.h"
#include "Varnic/DemoData/DemoNotes.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Fixtures/DemoCall.h"
#include "VarnicCore/Models/PlaceholderBlocks.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <utility>

namespace varnic::DemoData {

namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::pair<Speaker, std::string>>;

constexpr Speaker you = Speaker::you;
constexpr Speaker them = Speaker::them;

/// Seconds before the first and after the last word.
constexpr double around = 2;

CallRecord record(std::string themName, std::string source, Date startedAt, const Lines& lines) {
    CallRecord call;
    call.startedAt = startedAt;
    call.source = std::move(source);
    call.segments = DemoCall::timed(lines, around, 1);
    call.duration = call.segments.back().end + around;
    call.tracks = {you, them};
    call.themName = std::move(themName);
    return call;
}

Note noteOf(const CallRecord& call, const CallDigest& digest, const Days& days) {
    return NoteEditor::callNote(Uuid::random(), call, digest, days.region, call.startedAt);
}

/// As the program itself would file it.
Note filed(const CallRecord& call, const Days& days) {
    const DigestContext told{
        .callDate = call.startedAt, .yourName = yourName, .themName = call.themName, .source = call.source};
    return noteOf(call, ExtractiveSummariser::makeDigest(call.segments, told, days.region, call.startedAt), days);
}

ActionItem action(std::string text, Speaker owner, std::optional<std::string> due = std::nullopt) {
    ActionItem item;
    item.text = std::move(text);
    item.owner = owner;
    item.due = std::move(due);
    return item;
}

Block block(BlockKind kind, std::string text) {
    Block made;
    made.kind = kind;
    made.text = std::move(text);
    return made;
}

Note launchCall(const Days& days) {
    Note note = filed(record("Mira", "Zoom", days.ago(0, 11h), DemoCall::lines()), days);
    note.pinned = true;
    // Under the heading of the notes, where the user would write.
    const auto place = note.blocks.erase(std::ranges::find_if(note.blocks, isBlank));
    note.blocks.insert(place, {block(BlockKind::subheading, "After the call"),
                               block(BlockKind::paragraph,
                                     "Mira sounded keen on the bundle — check the Intel numbers before Friday.")});
    return note;
}

Note designReview(const Days& days) {
    const Lines lines{
        {you, "Thanks for joining, Lucas. I have the three sidebar drafts open."},
        {them, "The second one reads best, but the sidebar still feels heavy to me."},
        {you, "Agreed. I can lighten it and drop the second divider, nobody will miss it."},
        {them, "Good. And for note titles, did you ever try the serif?"},
        {you, "Only in the export. In the window we kept the sans so far."},
        {them, "Let me try the serif for note titles, I have the font files here."},
        {you, "Then I will wait with the icons until we have seen it."},
        {them, "The empty states are lovely, by the way. Keep the drawing as it is."},
        {you, "I will send you updated mocks on Thursday so that you can go over them before the release."},
        {them, "Perfect. I am around all day on Thursday."},
    };
    CallDigest digest;
    digest.title = "Library design review";
    digest.summary = {"The second sidebar draft wins, in a lighter form and without its second divider.",
                      "Note titles may become serif; Lucas tries it before the icons are redrawn.",
                      "The empty states stay as they are."};
    digest.actions = {action("Lighten the sidebar and drop the second divider", you),
                      action("Try the serif for note titles", them), action("Send updated mocks", you, "Thursday")};
    digest.email = {.subject = "Follow-up: library design review",
                    .body =
                        "Hi Lucas,\n\nThanks for going through the drafts with me. I’ll lighten the sidebar, drop the "
                        "second divider and send you updated mocks on Thursday. Could you try the serif for note "
                        "titles until then?\n\nTara"};
    digest.provider = "Claude Haiku 5.5";
    digest.isLocal = false;
    digest.createdAt = days.ago(0, 9h + 20min);
    return noteOf(record("Lucas", "Google Meet", days.ago(0, 9h), lines), digest, days);
}

Note interview(const Days& days) {
    const Lines lines{
        {you, "Hello Owen!"},
        {them, "Yes, thanks. Happy to be here."},
        {you, "Tell me about the project that you are most proud of."},
        {them, "At my last company I rebuilt the sync engine, and support requests fell by half within three months."},
        {you, "What would you do differently today?"},
        {them, "I would write the failure tests first. We found two data losses late because nobody had tried a full "
               "disk."},
        {you, "How do you like to work with designers?"},
        {them, "Early and often. I would rather throw away a prototype than a finished feature."},
        {you, "Great. I will send you the take-home exercise by tomorrow."},
        {them, "Thanks. I'll return it by Monday."},
        {you, "We decided to make an offer within two weeks, so you will hear from us soon."},
        {them, "That sounds good. Goodbye."},
    };
    Note note = filed(record("Owen", "Microsoft Teams", days.ago(2, 14h), lines), days);
    note.title = "Interview with Owen";
    return note;
}

Note appointment(const Days& days) {
    const Lines lines{
        {them, "Good morning, this is the clinic. How can I help you?"},
        {you, "Hi, I would like to move my appointment on the ninth, please."},
        {them, "Of course. We have Tuesday at half past eight or Thursday at four."},
        {you, "Tuesday at half past eight is fine."},
        {them, "Please bring your insurance card and the form that we mailed you."},
        {you, "I'll fill in the form by Monday."},
        {them, "And nothing to eat for two hours before you come."},
        {you, "Understood. Thank you, goodbye."},
    };
    Note note = filed(record("Clinic", "FaceTime", days.ago(4, 10h + 30min), lines), days);
    note.title = "Clinic appointment";
    return note;
}

} // namespace

std::vector<Note> calls(const Days& days) {
    return {launchCall(days), designReview(days), interview(days), appointment(days)};
}

} // namespace varnic::DemoData

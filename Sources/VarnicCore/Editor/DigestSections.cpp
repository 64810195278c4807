#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Models/PlaceholderBlocks.h"
#include "VarnicCore/Summariser/EmailDrafter.h"
#include "VarnicCore/Summariser/TitleSuggester.h"
#include "VarnicCore/Text/TextKit.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnic::NoteEditor {

namespace {

/// A digest's to-do whose text is more similar than this to one that the user ticked has been done already.
constexpr double doneSimilarity = 0.7;

using Blocks = std::vector<Block>;

Block makeBlock(BlockKind kind, std::string text, bool fromDigest) {
    Block block;
    block.kind = kind;
    block.text = std::move(text);
    block.fromDigest = fromDigest;
    return block;
}

Block makeTodo(const ActionItem& action) {
    Block block = makeBlock(BlockKind::todo, action.text, true);
    block.owner = action.owner;
    block.due = action.due;
    return block;
}

Blocks::iterator findHeading(Note& note, std::string_view text) {
    return std::ranges::find_if(
        note.blocks, [text](const Block& block) { return block.kind == BlockKind::heading && block.text == text; });
}

/// Takes the digest's blocks out of the note and gives those that are ticked to-dos.
Blocks takeDigestBlocks(Note& note) {
    Blocks kept;
    const auto isTicked = [](const Block& block) {
        return block.fromDigest && block.kind == BlockKind::todo && block.done;
    };
    std::ranges::copy_if(note.blocks, std::back_inserter(kept), isTicked);
    std::erase_if(note.blocks, [](const Block& block) { return block.fromDigest; });
    return kept;
}

Blocks todoBlocks(Blocks kept, const std::vector<ActionItem>& actions) {
    Blocks todos = kept;
    for (const ActionItem& action : actions) {
        const bool isDone = std::ranges::any_of(
            kept, [&](const Block& done) { return TextKit::similarity(action.text, done.text) > doneSimilarity; });
        if (!isDone) {
            todos.push_back(makeTodo(action));
        }
    }
    return todos;
}

/// Adds blocks to the end of the section `title`; where there is none yet, it is made right before the section `other`
/// or at the end.
void insertSection(const std::string& title, Blocks blocks, std::string_view other, Note& note) {
    auto place = note.blocks.end();
    if (const auto heading = findHeading(note, title); heading != note.blocks.end()) {
        place = std::find_if(heading + 1, note.blocks.end(),
                             [](const Block& block) { return block.kind == BlockKind::heading; });
    } else {
        place = findHeading(note, other);
        blocks.insert(blocks.begin(), makeBlock(BlockKind::heading, title, false));
    }
    note.blocks.insert(place, std::move_iterator(blocks.begin()), std::move_iterator(blocks.end()));
    const Block& first = note.blocks.front();
    if (note.blocks.size() >= 2 && first.kind == BlockKind::paragraph && first.text.empty() && !first.fromDigest) {
        note.blocks.erase(note.blocks.begin());
    }
}

} // namespace

Note callNote(Uuid id, CallRecord call, const std::optional<CallDigest>& digest, const Region& region, Date now,
              const NounTagger& tagger) {
    const Date startedAt = call.startedAt;
    Note note(id, {}, startedAt, placeholderBlocks(), std::move(call));
    if (digest) {
        apply(*digest, note, true, now);
    } else {
        const DigestContext told{.callDate = startedAt,
                                 .yourName = {},
                                 .themName = note.call->themName,
                                 .source = note.call->source,
                                 .language = note.call->language};
        note.title = TitleSuggester::title(note.call->segments, told, region, tagger);
    }
    return note;
}

void apply(const CallDigest& digest, Note& note, bool replaceTitle, Date now) {
    if (replaceTitle || note.title.empty()) {
        note.title = digest.title;
    }
    if (note.call) {
        note.call->digest = digest;
    }
    Blocks kept = takeDigestBlocks(note);
    Blocks summary;
    for (const std::string& line : digest.summary) {
        summary.push_back(makeBlock(BlockKind::bullet, line, true));
    }
    insertSection("Summary", std::move(summary), "To-dos", note);
    insertSection("To-dos", todoBlocks(std::move(kept), digest.actions), notesHeading, note);
    if (findHeading(note, notesHeading) == note.blocks.end()) {
        std::ranges::move(placeholderBlocks(), std::back_inserter(note.blocks));
    }
    note.modified = now;
}

void renameThem(std::string name, Note& note) {
    if (!note.call) {
        return;
    }
    if (note.call->digest) {
        EmailDrafter::greetAnew(note.call->digest->email, note.call->themName, name);
    }
    note.call->themName = std::move(name);
}

} // namespace varnic::NoteEditor

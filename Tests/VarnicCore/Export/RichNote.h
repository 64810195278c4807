#pragma once

#include "VarnicCore/Models/Note.h"

#include <string>
#include <utility>
#include <vector>

namespace varnic::RichNote {

inline Block block(BlockKind kind, std::string text) {
    Block block;
    block.kind = kind;
    block.text = std::move(text);
    return block;
}

inline Note of(std::vector<Block> blocks, const std::string& title = "T") {
    Note note(Uuid::random(), title, parseDate("2026-03-14T09:26:53Z"), {});
    note.blocks = std::move(blocks);
    return note;
}

/// A call with all that a note can hold.
inline Note call() {
    Block owed = block(BlockKind::todo, "Send designs");
    owed.owner = Speaker::you;
    owed.due = "Friday";
    Block done = block(BlockKind::todo, "Confirm");
    done.owner = Speaker::them;
    done.done = true;
    Note note = of({block(BlockKind::paragraph, "Brücke {x} \\ 今日"), block(BlockKind::heading, "Plan"),
                    block(BlockKind::subheading, "Detail"), owed, done, block(BlockKind::bullet, "Point"),
                    block(BlockKind::quote, "Said"), Block::flashcard("Front", "Back"),
                    Block::table({{"Name", "Price"}, {"Basic"}, {"Pro", "a\nb", "extra"}}),
                    block(BlockKind::divider, ""), block(BlockKind::paragraph, "مرحبا بالعالم 🎉")},
                   "Q3 & “launch”");
    CallRecord& record = note.call.emplace();
    record.startedAt = note.created;
    record.duration = 754;
    record.source = "Zoom";
    record.themName = "Maya";
    record.segments = {Segment(Speaker::you, 0, 2, "Hello."), Segment(Speaker::them, 65, 66, "Yes.")};
    record.digest.emplace();
    record.digest->provider = "Varnic";
    record.digest->email = {"Notes", "Hi,\n\nbye"};
    return note;
}

} // namespace varnic::RichNote

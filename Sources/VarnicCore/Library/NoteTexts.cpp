#include "VarnicCore/Library/NoteTexts.h"

#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace varnic {

namespace {

using Field = SearchHit::Field;

constexpr std::string_view you = "You: ";

Field fieldOf(BlockKind kind) {
    switch (kind) {
    case BlockKind::heading:
    case BlockKind::subheading:
        return Field::heading;
    case BlockKind::todo:
        return Field::todo;
    case BlockKind::flashcard:
        return Field::flashcard;
    case BlockKind::table:
        return Field::table;
    default:
        return Field::body;
    }
}

} // namespace

NoteTexts::NoteTexts(const Note& note)
    : note_(note), title_(note.displayTitle()), transcriptAt_(1 + note.blocks.size()),
      emailAt_(transcriptAt_ + (note.call ? note.call->segments.size() : 0)),
      hasEmail_(note.call && note.call->digest) {
    if (note.call) {
        them_ = fmt::format("{}: ", Unicode::trimBlanks(note.call->name(Speaker::them, {})));
    }
}

const Block* NoteTexts::block(std::size_t index) const {
    return index > 0 && index < transcriptAt_ ? &note_.blocks[index - 1] : nullptr;
}

const Segment* NoteTexts::segment(std::size_t index) const {
    return index >= transcriptAt_ && index < emailAt_ ? &note_.call->segments[index - transcriptAt_] : nullptr;
}

Field NoteTexts::field(std::size_t index) const {
    if (index == 0) {
        return Field::title;
    }
    if (const Block* found = block(index)) {
        return fieldOf(found->kind);
    }
    return index < emailAt_ ? Field::transcript : Field::email;
}

std::span<const std::string_view> NoteTexts::pieces(std::size_t index) {
    pieces_.clear();
    if (index == 0) {
        pieces_ = {title_};
    } else if (const Block* inBlock = block(index)) {
        addBlock(*inBlock);
    } else if (const Segment* line = segment(index)) {
        pieces_ = {line->speaker == Speaker::you ? you : std::string_view(them_), line->text};
    } else {
        const EmailDraft& email = note_.call->digest->email;
        pieces_ = {email.subject, " — ", email.body};
    }
    return pieces_;
}

void NoteTexts::addBlock(const Block& block) {
    switch (block.kind) {
    case BlockKind::divider:
        break;
    case BlockKind::flashcard:
        pieces_ = {block.text, " — ", block.back};
        break;
    case BlockKind::table:
        for (const auto& row : block.rows) {
            for (const std::string& cell : row) {
                if (!pieces_.empty()) {
                    pieces_.emplace_back(" · ");
                }
                pieces_.emplace_back(cell);
            }
        }
        break;
    default:
        pieces_ = {block.text};
        break;
    }
}

std::string NoteTexts::text(std::size_t index) {
    return fmt::format("{}", fmt::join(pieces(index), ""));
}

} // namespace varnic

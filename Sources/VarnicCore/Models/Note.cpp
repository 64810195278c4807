#include "VarnicCore/Models/Note.h"

#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnic {

namespace {

std::vector<Block> blocksOfKind(const std::vector<Block>& blocks, BlockKind kind) {
    std::vector<Block> found;
    std::ranges::copy_if(blocks, std::back_inserter(found), [kind](const Block& block) { return block.kind == kind; });
    return found;
}

} // namespace

Note::Note(Date createdAt, std::string noteTitle) : Note(Uuid::random(), std::move(noteTitle), createdAt, {}) {}

Note::Note(Uuid noteId, std::string noteTitle, Date createdAt, std::vector<Block> content,
           std::optional<CallRecord> record)
    : id(noteId), title(std::move(noteTitle)), created(createdAt), modified(createdAt), blocks(std::move(content)),
      call(std::move(record)) {
    keepOneBlock();
}

void Note::keepOneBlock() {
    if (blocks.empty()) {
        blocks.emplace_back();
    }
}

std::string Note::displayTitle() const {
    if (const auto trimmed = Unicode::trim(title); !trimmed.empty()) {
        return std::string(trimmed);
    }
    return isCall() ? "Untitled call" : "Untitled note";
}

std::vector<Block> Note::todos() const {
    return blocksOfKind(blocks, BlockKind::todo);
}

std::vector<Block> Note::flashcards() const {
    return blocksOfKind(blocks, BlockKind::flashcard);
}

} // namespace varnic

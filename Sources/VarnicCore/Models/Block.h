#pragma once

#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Speaker.h"
#include "VarnicCore/Models/Uuid.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// What a block of a note is, in the order in which the menu for adding one lists them.
enum class BlockKind { paragraph, heading, subheading, todo, bullet, quote, table, flashcard, divider };

inline constexpr std::array allBlockKinds{BlockKind::paragraph, BlockKind::heading,   BlockKind::subheading,
                                          BlockKind::todo,      BlockKind::bullet,    BlockKind::quote,
                                          BlockKind::table,     BlockKind::flashcard, BlockKind::divider};

/// The form in which a kind is stored; also its id in lists.
std::string_view rawValue(BlockKind kind);
std::optional<BlockKind> blockKindFrom(std::string_view rawValue);

/// The name in the menu for adding a block.
std::string_view title(BlockKind kind);

/// The name of the kind's icon.
std::string_view symbol(BlockKind kind);

/// Whether the block's content is its text: every kind but a table and a divider.
bool isTextual(BlockKind kind);

/// The schedule of one flashcard. A new card is in box 1, due now (no date), never reviewed.
struct CardState {
    /// 1 to 5.
    int box = 1;
    std::optional<Date> due;
    /// How often the card was graded.
    int reviews = 0;

    bool operator==(const CardState&) const = default;
};

/// One block of a note.
struct Block {
    Uuid id = Uuid::random();
    BlockKind kind = BlockKind::paragraph;
    /// The text of a paragraph, heading, to-do, bullet or quote, or the front of a flashcard.
    std::string text;
    /// A to-do's tick.
    bool done = false;
    /// The back of a flashcard.
    std::string back;
    /// The cells of a table; the first row is its header.
    std::vector<std::vector<std::string>> rows;
    std::optional<CardState> card;
    /// Who owes a to-do.
    std::optional<Speaker> owner;
    /// A to-do's due date in words.
    std::optional<std::string> due;
    /// Made from a digest, and replaced when the call is summarised again.
    bool fromDigest = false;

    static Block flashcard(std::string front, std::string back);
    static Block table(std::vector<std::vector<std::string>> rows);

    bool operator==(const Block&) const = default;
};

} // namespace varnic

#pragma once

#include "VarnicCore/Models/Block.h"
#include "VarnicCore/Models/Call.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Uuid.h"

#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// The one stored thing: a title, an ordered list of blocks and, for a recorded call, its record. A note has at least
/// one block at all times; whoever empties the list puts one fresh empty paragraph in.
struct Note {
    Uuid id;
    /// May be empty.
    std::string title;
    Date created;
    Date modified;
    /// Never empty.
    std::vector<Block> blocks;
    std::optional<CallRecord> call;
    bool pinned = false;

    /// A note with a fresh id and one empty paragraph, created and modified at `createdAt`.
    explicit Note(Date createdAt, std::string noteTitle = {});

    /// A note of these parts, modified at `createdAt`; an empty list of blocks becomes one empty paragraph.
    Note(Uuid noteId, std::string noteTitle, Date createdAt, std::vector<Block> content,
         std::optional<CallRecord> record = std::nullopt);

    /// Puts one fresh empty paragraph in when there is no block.
    void keepOneBlock();

    /// The title, or what stands for a blank one.
    [[nodiscard]] std::string displayTitle() const;

    [[nodiscard]] bool isCall() const { return call.has_value(); }

    /// The blocks of a kind, in order.
    [[nodiscard]] std::vector<Block> todos() const;
    [[nodiscard]] std::vector<Block> flashcards() const;

    bool operator==(const Note&) const = default;
};

} // namespace varnic

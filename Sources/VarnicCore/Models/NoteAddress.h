#pragma once

#include "VarnicCore/Models/Uuid.h"

#include <optional>
#include <string>
#include <string_view>

namespace varnic {

/// What names a note, and maybe a moment of its call, to other programs: "varnic:ID" or "varnic:ID?t=83".
struct NoteAddress {
    /// With the colon.
    static constexpr std::string_view scheme = "varnic:";

    Uuid note;
    /// Seconds into the call.
    std::optional<double> time;

    /// Whether the text is meant to be such an address, right or wrong.
    static bool isMeant(std::string_view text);

    /// Slashes in front of the id, as some programs put them there, don’t count. Nothing for any other text.
    static std::optional<NoteAddress> parse(std::string_view text);

    /// The time in whole seconds.
    [[nodiscard]] std::string text() const;

    bool operator==(const NoteAddress&) const = default;
};

} // namespace varnic

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// A half-open range of user-visible characters of a snippet.
struct Highlight {
    std::size_t begin = 0;
    std::size_t end = 0;

    bool operator==(const Highlight&) const = default;
};

/// A one-line extract of a text and where its matches stand.
struct Snippet {
    std::string text;
    std::vector<Highlight> highlights;

    bool operator==(const Snippet&) const = default;
};

/// Where the terms stand in the text, in order of their begins; a match that begins or ends inside a character takes in
/// all of it. Terms are folded and not empty. Pure.
std::vector<Highlight> findHighlights(std::string_view text, std::span<const std::string_view> terms);

/// The extract around the first occurrence of the first term: up to `radius` characters before it and twice as many
/// from its start, with "…" where something is left out. Terms are folded and not empty. Pure.
Snippet snip(std::string_view text, std::span<const std::string_view> terms, std::size_t radius);

} // namespace varnic

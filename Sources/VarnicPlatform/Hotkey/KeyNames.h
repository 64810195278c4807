#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The keys that may be a hotkey's, by the X protocol's symbols.
namespace varnic::KeyNames {

/// As users read it: "R", "7", "F9", "Page Up". Empty for a key that can't be a hotkey's.
std::string title(std::uint32_t key);

/// As X names it, and portals do: "r", "7", "F9", "Prior". Empty likewise.
std::string symbolName(std::uint32_t key);

/// The key with this title.
std::optional<std::uint32_t> fromTitle(std::string_view title);

/// Whether it is one of F1 to F24.
bool isFunctionKey(std::uint32_t key);

/// Whether it writes something, so that it takes a modifier to be a hotkey.
bool isForTyping(std::uint32_t key);

} // namespace varnic::KeyNames

#pragma once

#include <span>
#include <string_view>

namespace varnic {

/// A symbol of the interface and its drawing.
struct SymbolDrawing {
    /// What the program calls it.
    std::string_view name;
    /// The file of this name, without its suffix, among the icons.
    std::string_view file;
    /// Whether its outlines are filled.
    bool filled = false;
};

/// All symbols, sorted by name.
std::span<const SymbolDrawing> allSymbols();

/// The symbol of that name, or null.
const SymbolDrawing* findSymbol(std::string_view name);

} // namespace varnic

#pragma once

#include "VarnicCore/Models/Uuid.h"

#include <functional>
#include <string>

namespace varnic {

/// The icon of a notice that something went wrong.
inline constexpr const char* warningSymbol = "exclamationmark.triangle";

/// The icon of a notice that something is on the clipboard.
inline constexpr const char* copySymbol = "doc.on.doc";

/// A short notice. Two are different even where their words are equal.
struct ToastMessage {
    std::string text;
    /// The name of its icon.
    std::string symbol;
    /// Undoes what the notice reports, where that is possible.
    std::function<void()> undo = nullptr;
    Uuid id = Uuid::random();

    bool operator==(const ToastMessage& other) const { return id == other.id; }
};

} // namespace varnic

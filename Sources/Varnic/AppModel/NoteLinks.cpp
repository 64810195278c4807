#include "Varnic/AppModel/AppModel.h"
#include "VarnicCore/Models/NoteAddress.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>

#include <algorithm>

namespace varnic {

void AppModel::copyLink(Uuid id, std::optional<double> time) {
    desktop.copyText(NoteAddress{.note = id, .time = time}.text());
    flash({.text = "Link copied", .symbol = copySymbol});
}

void AppModel::openAddress(std::string_view text) {
    const auto address = NoteAddress::parse(text);
    if (!address) {
        constexpr std::size_t enough = 60; // characters
        flash({.text = fmt::format("“{}” is no address of a note.", Unicode::firstCharacters(text, enough)),
               .symbol = warningSymbol});
        return;
    }
    const Note* found = note(address->note);
    if (found == nullptr) {
        flash({.text = "The note of this link isn’t in the library.", .symbol = warningSymbol});
        return;
    }
    query = std::string();
    if (!isVisible(*found)) {
        section = LibrarySection::all;
    }
    selection = address->note;
    if (address->time && found->isCall()) {
        seek = Seek{address->note, std::min(*address->time, found->call->duration)};
    }
}

} // namespace varnic

#include "Varnic/Views/Theme/Native/SymbolTable.h"

#include <algorithm>
#include <iterator>

namespace varnic {

namespace {

constexpr SymbolDrawing symbols[] = {
    {"arrow.up.forward.app", "external-link"},
    {"book.closed", "book"},
    {"calendar", "calendar"},
    {"checkmark", "check"},
    {"checkmark.circle", "circle-check"},
    {"checkmark.circle.fill", "circle-check-filled"},
    {"checkmark.seal", "badge-check"},
    {"checkmark.square", "square-check"},
    {"checkmark.square.fill", "square-check-filled"},
    {"chevron.down", "chevron-down"},
    {"chevron.left", "chevron-left"},
    {"chevron.right", "chevron-right"},
    {"chevron.up", "chevron-up"},
    {"desktopcomputer", "monitor"},
    {"doc.on.doc", "copy"},
    {"ellipsis.circle", "circle-ellipsis"},
    {"envelope", "mail"},
    {"exclamationmark.circle", "circle-alert"},
    {"exclamationmark.triangle", "triangle-alert"},
    {"gearshape", "settings"},
    {"info.circle", "info"},
    {"line.3.horizontal", "menu"},
    {"list.bullet", "list"},
    {"lock.fill", "lock-filled"},
    {"magnifyingglass", "search"},
    {"minus", "minus"},
    {"pause.fill", "pause", true},
    {"pencil.tip.crop.circle", "pen-tool"},
    {"person.2.wave.2", "users"},
    {"phone.arrow.down.left", "phone-incoming"},
    {"pin.fill", "pin", true},
    {"play.fill", "play", true},
    {"plus", "plus"},
    {"progress", "loader-circle"},
    {"record.circle", "record"},
    {"rectangle.on.rectangle.angled", "gallery-vertical-end"},
    {"sidebar.left", "panel-left"},
    {"sidebar.right", "panel-right"},
    {"sparkles", "sparkles"},
    {"square", "square"},
    {"square.and.arrow.up", "share"},
    {"square.and.pencil", "square-pen"},
    {"stop.fill", "square", true},
    {"tablecells", "table"},
    {"text.alignleft", "text-align-start"},
    {"text.quote", "quote"},
    {"textformat.size", "heading-2"},
    {"textformat.size.larger", "heading-1"},
    {"trash", "trash-2"},
    {"waveform", "audio-lines"},
    {"waveform.slash", "audio-lines-slash"},
    {"xmark", "x"},
};

} // namespace

std::span<const SymbolDrawing> allSymbols() {
    return symbols;
}

const SymbolDrawing* findSymbol(std::string_view name) {
    const auto* const found = std::ranges::lower_bound(symbols, name, {}, &SymbolDrawing::name);
    return found != std::end(symbols) && found->name == name ? found : nullptr;
}

} // namespace varnic

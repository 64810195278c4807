#include "VarnicCore/Models/NoteAddress.h"

#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace varnic {

namespace {

constexpr std::string_view timeKey = "?t=";

/// Plain seconds, such as "83" or "83.5".
std::optional<double> seconds(std::string_view text) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    const bool isTime = error == std::errc() && end == text.data() + text.size() && std::isfinite(value) && value >= 0;
    return isTime ? std::optional(value) : std::nullopt;
}

} // namespace

bool NoteAddress::isMeant(std::string_view text) {
    return Unicode::lowerCased(text.substr(0, scheme.size())) == scheme;
}

std::optional<NoteAddress> NoteAddress::parse(std::string_view text) {
    if (!isMeant(text)) {
        return std::nullopt;
    }
    text.remove_prefix(scheme.size());
    text.remove_prefix(std::min(text.find_first_not_of('/'), text.size()));
    const std::size_t query = std::min(text.find('?'), text.size());
    std::string_view id = text.substr(0, query);
    // A program that takes it for a host's name ends it with one.
    if (id.ends_with('/')) {
        id.remove_suffix(1);
    }
    const auto note = Uuid::parse(id);
    if (!note) {
        return std::nullopt;
    }
    const std::string_view rest = text.substr(query);
    if (rest.empty()) {
        return NoteAddress{.note = *note, .time = std::nullopt};
    }
    const auto time = rest.starts_with(timeKey) ? seconds(rest.substr(timeKey.size())) : std::nullopt;
    return time ? std::optional(NoteAddress{.note = *note, .time = time}) : std::nullopt;
}

std::string NoteAddress::text() const {
    const std::string address = std::string(scheme) + note.text();
    return time ? fmt::format("{}{}{:.0f}", address, timeKey, std::floor(*time)) : address;
}

} // namespace varnic

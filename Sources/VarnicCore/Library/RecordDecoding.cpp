#include "VarnicCore/Library/JsonParsing.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Library/RecordKeys.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace varnic {

namespace {

using RecordKeys::Record;
using simdjson::dom::element;

/// Where a value stands: a chain on the stack that is put in words only when something is wrong.
struct Place {
    /// A key, or what the elements of an array are called.
    std::string_view name;
    /// From 1; 0 for a key.
    std::size_t number = 0;
    const Place* outer = nullptr;

    /// Such as "“box” in “card” in block 3".
    [[nodiscard]] std::string words() const {
        const std::string own = number == 0 ? fmt::format("“{}”", name) : fmt::format("{} {}", name, number);
        return outer == nullptr ? own : fmt::format("{} in {}", own, outer->words());
    }
};

[[noreturn]] void failType(const Place* place, std::string_view expected) {
    throw DecodeError(fmt::format("{} is not {}.", place == nullptr ? "The text" : place->words(), expected));
}

template <class T>
T take(element json, const Place* place, std::string_view expected) {
    T value;
    if (json.get(value) != simdjson::SUCCESS) {
        failType(place, expected);
    }
    return value;
}

std::string_view takeText(element json, const Place* place) {
    return take<std::string_view>(json, place, "a string");
}

void read(element json, const Place* place, bool& value) {
    value = take<bool>(json, place, "true or false");
}

void read(element json, const Place* place, double& value) {
    value = take<double>(json, place, "a number");
}

void read(element json, const Place* place, int& value) {
    // Through double every int goes unchanged, and 2.0 is as whole as 2.
    const auto number = take<double>(json, place, "a whole number");
    if (std::trunc(number) != number || number < std::numeric_limits<int>::min() ||
        number > std::numeric_limits<int>::max()) {
        failType(place, "a whole number of usual size");
    }
    value = static_cast<int>(number);
}

void read(element json, const Place* place, std::string& value) {
    value = takeText(json, place);
}

void read(element json, const Place* place, Uuid& value) {
    const auto id = Uuid::parse(takeText(json, place));
    if (!id) {
        failType(place, "a UUID");
    }
    value = *id;
}

void read(element json, const Place* place, Date& value) {
    const std::string_view text = takeText(json, place);
    try {
        value = parseDate(text);
    } catch (const std::invalid_argument& error) {
        throw DecodeError(error.what());
    }
    // An offset can lead out of the years that can be written again.
    if (!RecordKeys::isStorable(value)) {
        throw DecodeError(fmt::format("Bad date {}", text));
    }
}

void read(element json, const Place* place, Speaker& value) {
    const auto speaker = speakerFrom(takeText(json, place));
    if (!speaker) {
        failType(place, "“you” or “them”");
    }
    value = *speaker;
}

/// What is no known kind reads as a paragraph, so that a kind from a newer version keeps its text.
void read(element json, const Place* /*place*/, BlockKind& value) {
    std::string_view text;
    const bool isText = json.get(text) == simdjson::SUCCESS;
    value = (isText ? blockKindFrom(text) : std::nullopt).value_or(BlockKind::paragraph);
}

template <Record T>
void read(element json, const Place* place, T& record);

/// A record to read into; without the fresh id that it would otherwise draw from the system.
template <class T>
T blank() {
    return {};
}

template <>
Block blank() {
    return {.id = {}, .text = {}, .back = {}, .rows = {}, .card = {}, .owner = {}, .due = {}};
}

template <>
ActionItem blank() {
    return {.id = {}, .text = {}, .owner = {}, .due = {}, .at = {}};
}

template <class T>
constexpr std::string_view elementName = "element";
template <>
constexpr std::string_view elementName<Block> = "block";
template <>
constexpr std::string_view elementName<Segment> = "segment";
template <>
constexpr std::string_view elementName<ActionItem> = "action";
template <>
constexpr std::string_view elementName<Speaker> = "track";
template <>
constexpr std::string_view elementName<std::vector<std::string>> = "row";
template <>
constexpr std::string_view elementName<std::string> = "text";

template <class Use>
void forEachElement(element json, const Place* place, std::string_view name, Use use) {
    const auto array = take<simdjson::dom::array>(json, place, "an array");
    Place inner{.name = name, .number = 0, .outer = place};
    for (const element item : array) {
        ++inner.number;
        use(item, &inner);
    }
}

template <class T>
void read(element json, const Place* place, std::vector<T>& values) {
    values.reserve(take<simdjson::dom::array>(json, place, "an array").size());
    forEachElement(json, place, elementName<T>, [&values](element item, const Place* inner) {
        T value = blank<T>();
        read(item, inner, value);
        values.push_back(std::move(value));
    });
}

template <class T>
void read(element json, const Place* place, std::optional<T>& value) {
    value = blank<T>();
    read(json, place, *value);
}

/// The values of an object's known keys, gathered in one pass; of a key that stands twice the last.
template <class Names>
auto gather(element json, const Place* place, const Names& names) {
    std::array<std::optional<element>, std::tuple_size_v<Names>> found;
    for (const auto& [key, value] : take<simdjson::dom::object>(json, place, "an object")) {
        const auto name = std::ranges::find(names, key);
        if (name != names.end()) {
            found.at(static_cast<std::size_t>(name - names.begin())) = value;
        }
    }
    return found;
}

template <class T>
constexpr bool isOptional = false;
template <class T>
constexpr bool isOptional<std::optional<T>> = true;

/// Reads the value of a key of a strict record.
template <class Member>
void readKey(std::optional<element> found, const Place& place, Member& member) {
    if (found) {
        read(*found, &place, member);
    } else if (!isOptional<Member>) {
        throw DecodeError(place.words() + " is missing.");
    }
}

/// Reads the value of a key of a tolerant record; whether there was one. A missing or null one leaves the member.
template <class Member>
bool readTolerantKey(std::optional<element> found, const Place& place, Member& member) {
    if (!found || found->is_null()) {
        return false;
    }
    read(*found, &place, member);
    return true;
}

/// Calls `use` with the value, the place and the member of every key.
template <class T, class Use>
void forEachKey(element json, const Place* place, T& record, Use use) {
    std::apply(
        [&](const auto&... key) {
            const auto found = gather(json, place, std::array{key.name...});
            std::size_t index = 0;
            (use(found.at(index++), Place{.name = key.name, .outer = place}, record.*key.member), ...);
        },
        RecordKeys::keys<T>);
}

template <Record T>
void read(element json, const Place* place, T& record) {
    forEachKey(json, place, record,
               [](auto found, const Place& inner, auto& member) { readKey(found, inner, member); });
}

template <>
void read(element json, const Place* place, Block& record) {
    forEachKey(json, place, record, []<class Member>(auto found, const Place& inner, Member& member) {
        const bool isThere = readTolerantKey(found, inner, member);
        if constexpr (std::is_same_v<Member, Uuid>) {
            if (!isThere) {
                member = Uuid::random();
            }
        }
    });
}

Note readNote(element json, const Place* place, Date now) {
    // With a block in the list the note makes none of its own; the list that is read replaces it.
    Note note({}, {}, now, std::vector<Block>(1, blank<Block>()));
    note.blocks.clear();
    forEachKey(json, place, note, [&note]<class Member>(auto found, const Place& inner, Member& member) {
        if constexpr (std::is_same_v<Member, Uuid>) {
            readKey(found, inner, member);
        } else {
            if constexpr (std::is_same_v<Member, Date>) {
                note.modified = note.created; // the key after "created", with its value for default
            }
            readTolerantKey(found, inner, member);
        }
    });
    note.keepOneBlock();
    return note;
}

} // namespace

Note JsonParsing::readNote(element json, Date now) {
    return varnic::readNote(json, nullptr, now);
}

Note decodeNote(std::string_view json, Date now) {
    simdjson::dom::parser parser;
    return JsonParsing::readNote(JsonParsing::parse(parser, json), now);
}

std::vector<Note> decodeNotes(std::string_view json, Date now) {
    simdjson::dom::parser parser;
    std::vector<Note> notes;
    forEachElement(JsonParsing::parse(parser, json), nullptr, "note",
                   [&](element item, const Place* place) { notes.push_back(readNote(item, place, now)); });
    return notes;
}

template <class T>
T decode(std::string_view json) {
    simdjson::dom::parser parser;
    T value = blank<T>();
    read(JsonParsing::parse(parser, json), nullptr, value);
    return value;
}

template Block decode(std::string_view);
template CardState decode(std::string_view);
template Segment decode(std::string_view);
template ActionItem decode(std::string_view);
template EmailDraft decode(std::string_view);
template CallDigest decode(std::string_view);
template CallRecord decode(std::string_view);
template std::vector<Block> decode(std::string_view);
template std::vector<CardState> decode(std::string_view);
template std::vector<Segment> decode(std::string_view);
template std::vector<ActionItem> decode(std::string_view);
template std::vector<EmailDraft> decode(std::string_view);
template std::vector<CallDigest> decode(std::string_view);
template std::vector<CallRecord> decode(std::string_view);

} // namespace varnic

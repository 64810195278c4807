#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Library/RecordKeys.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace varnic {

namespace {

using nlohmann::json;
using RecordKeys::Record;

json write(bool value) {
    return value;
}

json write(int value) {
    return value;
}

json write(double value) {
    if (!std::isfinite(value)) {
        throw EncodeError("A number that is not finite cannot be stored.");
    }
    return value;
}

json write(const std::string& value) {
    return value;
}

json write(const Uuid& value) {
    return value.text();
}

json write(Date value) {
    if (!RecordKeys::isStorable(value)) {
        throw EncodeError("A date outside the years 0000 to 9999 cannot be stored.");
    }
    return formatDate(value);
}

json write(BlockKind value) {
    return rawValue(value);
}

json write(Speaker value) {
    return rawValue(value);
}

template <Record T>
json write(const T& record);

template <class T>
json write(const std::vector<T>& values) {
    json array = json::array();
    array.get_ref<json::array_t&>().reserve(values.size());
    for (const T& value : values) {
        array.push_back(write(value));
    }
    return array;
}

/// Whether a block leaves the field out. Its id and kind always stand.
template <class Member>
bool isLeftOut(const Member& value) {
    if constexpr (std::is_same_v<Member, bool>) {
        return !value;
    } else if constexpr (requires { value.empty(); }) {
        return value.empty();
    } else {
        return false;
    }
}

template <class T, class Member>
void writeKey(json& object, std::string_view name, const Member& value) {
    if (std::is_same_v<T, Block> && isLeftOut(value)) {
        return;
    }
    object.emplace(name, write(value));
}

template <class T, class Member>
void writeKey(json& object, std::string_view name, const std::optional<Member>& value) {
    if (value) {
        object.emplace(name, write(*value));
    }
}

template <Record T>
json write(const T& record) {
    json object = json::object();
    std::apply([&](const auto&... key) { (writeKey<T>(object, key.name, record.*key.member), ...); },
               RecordKeys::keys<T>);
    return object;
}

} // namespace

template <class T>
json encode(const T& record) {
    return write(record);
}

std::string jsonText(const json& json) {
    return json.dump(2, ' ', false, json::error_handler_t::replace);
}

template json encode(const Note&);
template json encode(const Block&);
template json encode(const CardState&);
template json encode(const Segment&);
template json encode(const ActionItem&);
template json encode(const EmailDraft&);
template json encode(const CallDigest&);
template json encode(const CallRecord&);
template json encode(const std::vector<Note>&);
template json encode(const std::vector<Block>&);
template json encode(const std::vector<CardState>&);
template json encode(const std::vector<Segment>&);
template json encode(const std::vector<ActionItem>&);
template json encode(const std::vector<EmailDraft>&);
template json encode(const std::vector<CallDigest>&);
template json encode(const std::vector<CallRecord>&);

} // namespace varnic

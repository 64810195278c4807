#include "probe/Arguments.h"

#include <algorithm>
#include <utility>

namespace varnic::probe {

Arguments::Arguments(Json object) : object_(std::move(object)) {
    if (!object_.is_object()) {
        throw ProbeError("args must be an object");
    }
}

bool Arguments::has(const std::string& key) const {
    return object_.contains(key) && !object_[key].is_null();
}

const Json& Arguments::at(const std::string& key) const {
    const auto found = object_.find(key);
    if (found == object_.end()) {
        throw ProbeError("missing argument " + key);
    }
    return *found;
}

template <typename Value>
Value Arguments::get(const std::string& key, bool (Json::*isRight)() const, const char* typeName) const {
    const Json& value = at(key);
    if (!(value.*isRight)()) {
        throw ProbeError(key + " must be " + typeName);
    }
    return value.get<Value>();
}

std::string Arguments::text(const std::string& key) const {
    return get<std::string>(key, &Json::is_string, "a string");
}

std::string Arguments::textOr(const std::string& key, const std::string& otherwise) const {
    return has(key) ? text(key) : otherwise;
}

double Arguments::number(const std::string& key) const {
    return get<double>(key, &Json::is_number, "a number");
}

bool Arguments::boolean(const std::string& key) const {
    return get<bool>(key, &Json::is_boolean, "a boolean");
}

int Arguments::integer(const std::string& key) const {
    const double value = number(key);
    const auto whole = static_cast<int>(value);
    if (static_cast<double>(whole) != value) {
        throw ProbeError(key + " must be an integer");
    }
    return whole;
}

std::size_t Arguments::count(const std::string& key) const {
    return static_cast<std::size_t>(std::max(integer(key), 0));
}

Date Arguments::date(const std::string& key) const {
    try {
        return parseDate(text(key));
    } catch (const std::invalid_argument& error) {
        throw ProbeError(error.what());
    }
}

Uuid Arguments::uuid(const std::string& key) const {
    if (const auto id = Uuid::parse(text(key))) {
        return *id;
    }
    throw ProbeError(key + " must be a UUID");
}

Speaker Arguments::speaker(const std::string& key) const {
    if (const auto speaker = speakerFrom(text(key))) {
        return *speaker;
    }
    throw ProbeError(key + " must be \"you\" or \"them\"");
}

std::vector<std::string> Arguments::texts(const std::string& key) const {
    try {
        return at(key).get<std::vector<std::string>>();
    } catch (const Json::exception&) {
        throw ProbeError(key + " must be an array of strings");
    }
}

std::set<std::string> Arguments::textSet(const std::string& key) const {
    const std::vector<std::string> list = texts(key);
    return {list.begin(), list.end()};
}

std::vector<Segment> Arguments::segments(const std::string& key) const {
    return stored<std::vector<Segment>>(key);
}

Note Arguments::note(const std::string& key) const {
    return decoded(key, [this](const std::string& json) { return decodeNote(json, now()); });
}

std::vector<Note> Arguments::notes(const std::string& key) const {
    return decoded(key, [this](const std::string& json) { return decodeNotes(json, now()); });
}

DigestContext Arguments::context() const {
    const Arguments inner(at("context"));
    return {.callDate = inner.date("callDate"),
            .yourName = inner.text("yourName"),
            .themName = inner.text("themName"),
            .source = inner.text("source")};
}

Date Arguments::now() const {
    return has("now") ? date("now") : currentDate();
}

Region Arguments::region() const {
    Region region{textOr("locale", "en_US"), textOr("timeZone", "UTC")};
    if (!region.hasKnownZone()) {
        throw ProbeError("no time zone is named " + region.timeZone);
    }
    return region;
}

} // namespace varnic::probe

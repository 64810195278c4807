#include "BrevinKit/UpdateFeed.h"

#include "BrevinKit/UpdateError.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace brevin {

namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void refuse() {
    throw UpdateError(UpdateMessages::feedUnavailable);
}

/// The value under a key; nullptr when it is missing or null.
const Json* find(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

std::optional<std::string> optionalText(const Json& object, const char* key) {
    const Json* value = find(object, key);
    if (value == nullptr) {
        return std::nullopt;
    }
    if (!value->is_string()) {
        refuse();
    }
    return value->get<std::string>();
}

std::string text(const Json& object, const char* key) {
    auto value = optionalText(object, key);
    if (!value) {
        refuse();
    }
    return std::move(*value);
}

/// A whole number in any spelling: 2 and 2.0 are the same in JSON.
std::int64_t wholeNumber(const Json& object, const char* key) {
    const Json* value = find(object, key);
    if (value == nullptr || !value->is_number()) {
        refuse();
    }
    constexpr double bound = 9223372036854775808.0; // 2^63
    if (const double number = value->get<double>();
        number < -bound || number >= bound || std::trunc(number) != number) {
        refuse();
    }
    return value->get<std::int64_t>();
}

std::optional<UpdateFeed::Download> optionalDownload(const Json& object) {
    const Json* value = find(object, "download");
    if (value == nullptr) {
        return std::nullopt;
    }
    if (!value->is_object()) {
        refuse();
    }
    return UpdateFeed::Download{.url = text(*value, "url"),
                                .length = wholeNumber(*value, "length"),
                                .edSignature = text(*value, "edSignature")};
}

} // namespace

UpdateFeed UpdateFeed::decode(std::string_view json) {
    if (json.size() > longest) {
        refuse();
    }
    const Json object = Json::parse(json, nullptr, false);
    if (!object.is_object()) {
        refuse();
    }
    return {.version = text(object, "version"),
            .url = text(object, "url"),
            .notes = optionalText(object, "notes"),
            .minimumSystemVersion = optionalText(object, "minimumSystemVersion"),
            .download = optionalDownload(object)};
}

std::string UpdateFeed::encode() const {
    Json object{{"version", version}, {"url", url}};
    if (notes) {
        object["notes"] = *notes;
    }
    if (minimumSystemVersion) {
        object["minimumSystemVersion"] = *minimumSystemVersion;
    }
    if (download) {
        object["download"] = {
            {"url", download->url}, {"length", download->length}, {"edSignature", download->edSignature}};
    }
    return object.dump(2, ' ', false, Json::error_handler_t::replace);
}

} // namespace brevin

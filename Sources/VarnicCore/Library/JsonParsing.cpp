#include "VarnicCore/Library/JsonParsing.h"

#include "VarnicCore/Library/NoteJson.h"

#include <fmt/format.h>

namespace varnic::JsonParsing {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

[[noreturn]] void fail(simdjson::error_code code) {
    switch (code) {
    case simdjson::EMPTY:
        throw DecodeError("There is no text.");
    case simdjson::CAPACITY:
        throw DecodeError("The text is too long.");
    case simdjson::MEMALLOC:
        throw DecodeError("The text is too long for the memory.");
    case simdjson::UTF8_ERROR:
        throw DecodeError("The text is not in UTF-8.");
    case simdjson::DEPTH_ERROR:
        throw DecodeError("The text is nested too deeply.");
    default:
        throw DecodeError(fmt::format("The text is not JSON: {}", simdjson::error_message(code)));
    }
}

simdjson::dom::element parse(simdjson::dom::parser& parser, std::string_view text, bool copy) {
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    if (text.empty()) {
        fail(simdjson::EMPTY);
    }
    simdjson::dom::element root;
    if (const auto code = parser.parse(text.data(), text.size(), copy).get(root); code != simdjson::SUCCESS) {
        fail(code);
    }
    return root;
}

} // namespace

simdjson::dom::element parsePadded(simdjson::dom::parser& parser, const char* bytes, std::size_t size) {
    return parse(parser, {bytes, size}, false);
}

simdjson::dom::element parse(simdjson::dom::parser& parser, std::string_view bytes) {
    return parse(parser, bytes, true);
}

} // namespace varnic::JsonParsing

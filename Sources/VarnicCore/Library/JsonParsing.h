#pragma once

#include "VarnicCore/Models/Note.h"

#include <simdjson.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The two steps of reading, for those who keep their own parser and buffer.
namespace varnic::JsonParsing {

/// Parses a document of `size` bytes in a buffer that is longer by at least simdjson::SIMDJSON_PADDING. A byte order
/// mark in front is passed over. The result lives in the parser until the next call. Throws DecodeError.
simdjson::dom::element parsePadded(simdjson::dom::parser& parser, const char* bytes, std::size_t size);

/// The same for bytes without padding, which are copied.
simdjson::dom::element parse(simdjson::dom::parser& parser, std::string_view bytes);

/// The note in a parsed document (see decodeNote). Throws DecodeError.
Note readNote(simdjson::dom::element json, Date now);

} // namespace varnic::JsonParsing

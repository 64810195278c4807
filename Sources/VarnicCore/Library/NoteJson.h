#pragma once

#include "VarnicCore/Models/Note.h"

#include <nlohmann/json_fwd.hpp>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// The stored form of notes and of the records in them: one JSON object a record, its keys the names of the fields.
/// Pure functions; any thread.
namespace varnic {

/// Why a JSON text is no record; `what()` is one sentence. A malformed date gives "Bad date " and its text.
class DecodeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Why a record cannot be stored; `what()` is one sentence.
class EncodeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads a note. Only its id must be there: `now` stands for a missing date of creation, and what else is missing or
/// null in the note or in a block has its default. The records inside are strict. Unknown keys are passed over, and of
/// a key that stands twice the last counts. Throws DecodeError.
Note decodeNote(std::string_view json, Date now);
std::vector<Note> decodeNotes(std::string_view json, Date now);

/// Reads a record by the rules above. Record: Block, CardState, Segment, ActionItem, EmailDraft, CallDigest,
/// CallRecord, or a std::vector of one of these. Throws DecodeError.
template <class Record>
Record decode(std::string_view json);

/// The JSON form of a record. Record: Note and all that `decode` reads. A block leaves out what has its default; absent
/// optionals write no key. Throws EncodeError for a number that is not finite and for a date outside the years 0000 to
/// 9999. Strings stand as they are, so use `jsonText` where they may hold malformed UTF-8.
template <class Record>
nlohmann::json encode(const Record& record);

/// The text of a note file: pretty-printed, keys sorted at every level, malformed UTF-8 replaced by U+FFFD.
std::string jsonText(const nlohmann::json& json);

} // namespace varnic

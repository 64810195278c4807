#pragma once

#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Models/Summariser.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace varnic::probe {

using Json = nlohmann::json;

/// The request is not one that the probe understands.
class ProbeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The arguments of one request. Every reader throws ProbeError for a missing argument or one of the wrong type.
class Arguments {
public:
    explicit Arguments(Json object);

    [[nodiscard]] bool has(const std::string& key) const;
    [[nodiscard]] const Json& at(const std::string& key) const;

    [[nodiscard]] std::string text(const std::string& key) const;
    [[nodiscard]] std::string textOr(const std::string& key, const std::string& otherwise) const;
    [[nodiscard]] double number(const std::string& key) const;
    [[nodiscard]] int integer(const std::string& key) const;
    /// An integer; one below 0 counts as 0.
    [[nodiscard]] std::size_t count(const std::string& key) const;
    [[nodiscard]] bool boolean(const std::string& key) const;
    [[nodiscard]] Date date(const std::string& key) const;
    [[nodiscard]] Uuid uuid(const std::string& key) const;
    [[nodiscard]] Speaker speaker(const std::string& key) const;
    [[nodiscard]] std::vector<std::string> texts(const std::string& key) const;
    [[nodiscard]] std::set<std::string> textSet(const std::string& key) const;
    [[nodiscard]] std::vector<Segment> segments(const std::string& key = "segments") const;
    [[nodiscard]] std::vector<Note> notes(const std::string& key = "notes") const;
    [[nodiscard]] Note note(const std::string& key = "note") const;
    [[nodiscard]] DigestContext context() const;

    /// A value in the form in which the library stores it.
    template <typename Value>
    [[nodiscard]] Value stored(const std::string& key) const {
        return decoded(key, [](const std::string& json) { return decode<Value>(json); });
    }

    /// The optional arguments that any request may carry.
    [[nodiscard]] Date now() const;
    [[nodiscard]] Region region() const;

private:
    template <typename Decoder>
    [[nodiscard]] auto decoded(const std::string& key, Decoder decoder) const {
        try {
            return decoder(at(key).dump());
        } catch (const DecodeError& error) {
            throw ProbeError(key + ": " + error.what());
        }
    }

    template <typename Value>
    [[nodiscard]] Value get(const std::string& key, bool (Json::*isRight)() const, const char* typeName) const;

    Json object_;
};

/// An argument that may be missing.
template <typename Value>
std::optional<Value> ifPresent(const Arguments& args, const std::string& key,
                               Value (Arguments::*read)(const std::string&) const) {
    return args.has(key) ? std::optional<Value>((args.*read)(key)) : std::nullopt;
}

/// An optional result: its value as `encoded` gives it, or null.
template <typename Value, typename Encoder>
Json orNull(const std::optional<Value>& value, Encoder encoded) {
    return value ? Json(encoded(*value)) : Json();
}

} // namespace varnic::probe

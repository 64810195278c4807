#pragma once

#include "VarnicCore/Models/Note.h"

#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

/// The keys of every stored record, for reading and for writing.
namespace varnic::RecordKeys {

template <class Record, class Member>
struct Key {
    std::string_view name;
    Member Record::* member;

    constexpr Key(const char* keyName, Member Record::* field) : name(keyName), member(field) {}
};

template <class Record>
inline constexpr std::tuple<> keys;

template <>
inline constexpr std::tuple keys<Note>{Key{"id", &Note::id},           Key{"title", &Note::title},
                                       Key{"created", &Note::created}, Key{"modified", &Note::modified},
                                       Key{"blocks", &Note::blocks},   Key{"call", &Note::call},
                                       Key{"pinned", &Note::pinned}};

template <>
inline constexpr std::tuple keys<Block>{Key{"id", &Block::id},     Key{"kind", &Block::kind},
                                        Key{"text", &Block::text}, Key{"done", &Block::done},
                                        Key{"back", &Block::back}, Key{"rows", &Block::rows},
                                        Key{"card", &Block::card}, Key{"owner", &Block::owner},
                                        Key{"due", &Block::due},   Key{"fromDigest", &Block::fromDigest}};

template <>
inline constexpr std::tuple keys<CardState>{Key{"box", &CardState::box}, Key{"due", &CardState::due},
                                            Key{"reviews", &CardState::reviews}};

template <>
inline constexpr std::tuple keys<Segment>{Key{"id", &Segment::id}, Key{"speaker", &Segment::speaker},
                                          Key{"start", &Segment::start}, Key{"end", &Segment::end},
                                          Key{"text", &Segment::text}};

template <>
inline constexpr std::tuple keys<ActionItem>{Key{"id", &ActionItem::id}, Key{"text", &ActionItem::text},
                                             Key{"owner", &ActionItem::owner}, Key{"due", &ActionItem::due},
                                             Key{"at", &ActionItem::at}};

template <>
inline constexpr std::tuple keys<EmailDraft>{Key{"subject", &EmailDraft::subject}, Key{"body", &EmailDraft::body}};

template <>
inline constexpr std::tuple keys<CallDigest>{
    Key{"title", &CallDigest::title},        Key{"summary", &CallDigest::summary},
    Key{"actions", &CallDigest::actions},    Key{"email", &CallDigest::email},
    Key{"provider", &CallDigest::provider},  Key{"isLocal", &CallDigest::isLocal},
    Key{"createdAt", &CallDigest::createdAt}};

template <>
inline constexpr std::tuple keys<CallRecord>{
    Key{"startedAt", &CallRecord::startedAt}, Key{"duration", &CallRecord::duration},
    Key{"source", &CallRecord::source},       Key{"segments", &CallRecord::segments},
    Key{"digest", &CallRecord::digest},       Key{"audioFolder", &CallRecord::audioFolder},
    Key{"tracks", &CallRecord::tracks},       Key{"themName", &CallRecord::themName},
    Key{"language", &CallRecord::language},   Key{"problem", &CallRecord::problem}};

/// A record that is stored under keys of its own.
template <class T>
concept Record = std::tuple_size_v<std::remove_cvref_t<decltype(keys<T>)>> > 0;

/// Dates that the stored form, whose years have four digits, can hold.
inline bool isStorable(Date date) {
    using namespace std::chrono;
    return date >= sys_days(year(0) / January / 1) && date < sys_days(year(10000) / January / 1);
}

} // namespace varnic::RecordKeys

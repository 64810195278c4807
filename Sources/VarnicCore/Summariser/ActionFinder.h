#pragma once

#include "VarnicCore/Models/Call.h"
#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Speaker.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Finds what people said that they or others would do, in spoken English. Any thread.
namespace varnic::ActionFinder {

/// At most 20 to-dos, in the order in which each was first said. A to-do that is said again is merged into the first.
std::vector<ActionItem> find(const std::vector<Segment>& segments);

/// A sentence cut before every commitment that follows a comma, a semicolon or a dash.
std::vector<std::string> clauses(std::string_view sentence);

/// The to-do that the clause is, as a short imperative; nothing when it is none. `at` is the moment in the call, in
/// seconds.
std::optional<ActionItem> action(std::string_view clause, Speaker speaker, std::optional<double> at);

/// Whether two items are the same to-do in different words.
bool same(const ActionItem& a, const ActionItem& b);

} // namespace varnic::ActionFinder

#pragma once

#include "VarnicCore/Models/Call.h"
#include "VarnicCore/Models/Summariser.h"

#include <string>
#include <string_view>
#include <vector>

/// Writes the follow-up mail of a call. Any thread.
namespace varnic::EmailDrafter {

/// A mail with the first five sentences and the first eight to-dos.
EmailDraft draft(std::string_view title, const std::vector<std::string>& summary,
                 const std::vector<ActionItem>& actions, const DigestContext& context);

/// Has a mail that greets the other party by one name greet them by another. One with another beginning stays.
void greetAnew(EmailDraft& email, std::string_view oldName, std::string_view newName);

/// The to-do as a sentence of the user to the other party: "Could you review it tomorrow?".
std::string phrase(const ActionItem& action);

/// What to add to a task for its due date in words, with the joining word in front (" by Friday"); empty when the task
/// says it already.
std::string dueText(std::string_view due, std::string_view task);

} // namespace varnic::EmailDrafter

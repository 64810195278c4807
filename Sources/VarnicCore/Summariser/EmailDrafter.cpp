#include "VarnicCore/Summariser/EmailDrafter.h"

#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <optional>
#include <ranges>

namespace varnic::EmailDrafter {

namespace {

constexpr std::size_t mostSentences = 5;
constexpr std::size_t mostTasks = 8;

/// Whether a due phrase in lower case is a moment "by" which something is done.
bool takesBy(std::string_view due) {
    constexpr std::array<std::string_view, 7> weekdays{"monday", "tuesday",  "wednesday", "thursday",
                                                       "friday", "saturday", "sunday"};
    return due.starts_with("end of") ||
           Unicode::any(due, [](char32_t c) { return u_isdigit(static_cast<UChar32>(c)) != 0; }) ||
           std::ranges::any_of(weekdays, [&](std::string_view day) { return due.ends_with(day); });
}

std::string greeting(std::string_view themName) {
    const std::string_view name = Unicode::trimBlanks(themName);
    return name.empty() ? "Hi all," : fmt::format("Hi {},", name);
}

} // namespace

EmailDraft draft(std::string_view title, const std::vector<std::string>& summary,
                 const std::vector<ActionItem>& actions, const DigestContext& context) {
    const std::string_view you = Unicode::trimBlanks(context.yourName);
    std::vector<std::string> lines{greeting(context.themName), "",
                                   "Thanks for the time today. A quick recap so we’re on the same page:", ""};
    for (const auto& sentence : summary | std::views::take(mostSentences)) {
        lines.push_back("• " + sentence);
    }
    if (summary.empty()) {
        lines.emplace_back("• We caught up on where things stand.");
    }
    if (!actions.empty()) {
        lines.insert(lines.end(), {"", "Next steps"});
    }
    for (const ActionItem& action : actions | std::views::take(mostTasks)) {
        lines.push_back("• " + phrase(action));
    }
    lines.insert(lines.end(), {"", "Let me know if I missed anything.", "", "Best,"});
    if (!you.empty()) {
        lines.emplace_back(you);
    }
    const bool isUnnamed = title.starts_with("Call on");
    return {isUnnamed ? "Follow-up from our call" : fmt::format("Follow-up: {}", title),
            fmt::format("{}", fmt::join(lines, "\n"))};
}

void greetAnew(EmailDraft& email, std::string_view oldName, std::string_view newName) {
    const std::string old = greeting(oldName) + "\n";
    if (email.body.starts_with(old)) {
        email.body.replace(0, old.size(), greeting(newName) + "\n");
    }
}

std::string phrase(const ActionItem& action) {
    const auto isEdge = [](char32_t c) { return std::u32string_view(U" .?!").contains(c); };
    const std::string task = TextKit::lowercasedFirst(Unicode::trim(action.text, isEdge));
    const std::string tail = action.due ? dueText(*action.due, task) : "";
    if (action.owner == Speaker::them) {
        return fmt::format("Could you {}{}?", task, tail);
    }
    return fmt::format("{} {}{}.", action.owner == Speaker::you ? "I’ll" : "We’ll", task, tail);
}

std::string dueText(std::string_view due, std::string_view task) {
    const std::string lower = Unicode::lowerCased(due);
    if (Unicode::lowerCased(task).find(lower) != std::string::npos) {
        return "";
    }
    return std::string(takesBy(lower) ? " by " : " ").append(due);
}

} // namespace varnic::EmailDrafter

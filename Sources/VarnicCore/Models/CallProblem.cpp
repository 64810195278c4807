#include "VarnicCore/Models/CallProblem.h"

#include "VarnicCore/Models/Clock.h"

#include <fmt/format.h>

#include <algorithm>

namespace varnic::CallProblem {

namespace {

/// How every sentence about lost audio begins.
std::string beginning(Speaker side) {
    return fmt::format("The recording of {} side lacks sound from ", side == Speaker::you ? "your" : "their");
}

/// Where they begin; the end where there are none.
std::size_t placeOfLoss(const std::string& problem) {
    std::size_t place = problem.size();
    for (const Speaker side : allSpeakers) {
        place = std::min(place, problem.find(beginning(side)));
    }
    return place;
}

} // namespace

std::string loss(Speaker side, double from, std::optional<double> until, std::string_view reason) {
    return fmt::format("{}{}{}: {}", beginning(side), Clock::stamp(from), until ? " to " + Clock::stamp(*until) : " on",
                       reason);
}

std::optional<std::string> lossIn(const std::optional<std::string>& problem) {
    const std::string told = problem ? problem->substr(placeOfLoss(*problem)) : "";
    return told.empty() ? std::nullopt : std::optional(told);
}

std::optional<std::string> withoutLoss(const std::optional<std::string>& problem) {
    if (!lossIn(problem)) {
        return problem;
    }
    std::string rest = problem->substr(0, placeOfLoss(*problem));
    rest.erase(rest.find_last_not_of(' ') + 1);
    return rest.empty() ? std::nullopt : std::optional(rest);
}

std::optional<std::string> joined(const std::optional<std::string>& problem, const std::optional<std::string>& loss) {
    if (problem && loss) {
        return *problem + " " + *loss;
    }
    return problem ? problem : loss;
}

bool isQuit(const std::optional<std::string>& problem) {
    return problem && problem->starts_with(quitProblem);
}

} // namespace varnic::CallProblem

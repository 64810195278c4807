#include "VarnicCore/Fixtures/DemoCall.h"

#include "VarnicCore/Text/TextKit.h"

namespace varnic::DemoCall {

const std::vector<std::pair<Speaker, std::string>>& lines() {
    static const std::vector<std::pair<Speaker, std::string>> call{
        {Speaker::them, "Good morning, thanks for making the time."},
        {Speaker::you, "Of course. First of all, the onboarding."},
        {Speaker::them, "We decided to keep the price at forty dollars a month."},
        {Speaker::you, "Good. The budget for the launch is ten thousand dollars."},
        {Speaker::them, "Can you send me the revised onboarding designs by Friday?"},
        {Speaker::you, "Sure, I'll send the designs by Friday."},
        {Speaker::them, "The pricing page still shows the old numbers, and customers are confused."},
        {Speaker::you, "Agreed. I'll update the pricing page tomorrow."},
        {Speaker::them, "We need to finalise the launch date next week."},
        {Speaker::you, "We decided on the second of June because the office is closed in May."},
        {Speaker::them, "Could you also ask QA to test the Intel build?"},
        {Speaker::you, "Yes, I'll ask the QA team today. Talk soon, bye!"},
        {Speaker::them, "Great, goodbye for now."},
    };
    return call;
}

std::map<Speaker, std::vector<std::string>> script() {
    std::map<Speaker, std::vector<std::string>> sides;
    for (const auto& [speaker, text] : lines()) {
        sides[speaker].push_back(text);
    }
    return sides;
}

std::vector<Segment> segments(double start, double pace) {
    return timed(lines(), start, pace);
}

std::vector<Segment> timed(const std::vector<std::pair<Speaker, std::string>>& spoken, double start, double pace) {
    constexpr double secondsAWord = 0.36;
    constexpr double extra = 0.4;
    constexpr double pause = 0.7;
    std::vector<Segment> transcript;
    double time = start;
    for (const auto& [speaker, text] : spoken) {
        const double length = static_cast<double>(TextKit::wordCount(text)) * secondsAWord * pace + extra;
        transcript.emplace_back(speaker, time, time + length, text);
        time += length + pause;
    }
    return transcript;
}

} // namespace varnic::DemoCall

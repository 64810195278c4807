#include "Varnic/DemoData/DemoData.h"

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/DemoData/DemoNotes.h"
#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/Fixtures/DemoCall.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <numbers>
#include <optional>
#include <utility>

namespace varnic::DemoData {

namespace {

constexpr int samplesASecond = 20;

/// Two waves, of which one falls while the other rises, so that the sides take turns.
std::vector<InkSample> waves(double seconds) {
    constexpr double period = 7.3;
    constexpr double loudnessOfYou = 0.6;
    constexpr double loudnessOfThem = 0.35;
    const auto count =
        std::min(RecordingController::samplesKept, static_cast<std::size_t>(std::lround(seconds * samplesASecond)));
    std::vector<InkSample> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double wave = std::sin(2 * std::numbers::pi * static_cast<double>(i) / samplesASecond / period);
        samples[i] = {.you = static_cast<float>(loudnessOfYou * std::max(wave, 0.0)),
                      .them = static_cast<float>(loudnessOfThem * std::max(-wave, 0.0))};
    }
    return samples;
}

} // namespace

bool isAskedFor() {
    return std::getenv("VARNIC_DEMO") != nullptr && std::getenv("VARNIC_SELFTEST") == nullptr;
}

std::vector<Note> notes(Date now, const Region& region) {
    const Days days{now, region};
    std::vector<Note> all = calls(days);
    std::ranges::move(writtenNotes(days), std::back_inserter(all));
    for (Note& note : all) {
        note.modified = std::min(note.modified, now); // what is told of today may still be to come
    }
    return all;
}

void load(AppModel& model) {
    model.isDemo = true;
    model.settings.keepForThisRun();
    for (Note& note : notes(currentDate(), model.region)) {
        model.restore(std::move(note));
    }
    model.selection = std::nullopt;
    model.selectFirstIfNeeded();
    model.settings.yourName = yourName;
    model.settings.consentSeen = true;
}

void clear(AppModel& model) {
    while (!model.notes().empty()) {
        model.remove(model.notes().front().id);
    }
    model.toast = std::nullopt;
}

void showLive(RecordingController& recorder, double elapsed, const std::string& source, std::size_t lines) {
    constexpr double lengthOfPartial = 2.5;
    std::vector<Segment> committed = DemoCall::segments(0, 1);
    committed.resize(std::min(lines, committed.size()));
    // The last of them has just ended.
    const double start = std::max(elapsed - lengthOfPartial, 0.0);
    const double later = committed.empty() ? 0 : std::max(start - committed.back().end, 0.0);
    for (Segment& line : committed) {
        line.start += later;
        line.end += later;
    }
    std::vector<Segment> partial{{Speaker::you, start, elapsed, "On pricing, we are thinking fifteen hundred rupees"}};
    recorder.loadDemo(elapsed, waves(elapsed), std::move(committed), {{Speaker::you, std::move(partial)}}, source);
}

} // namespace varnic::DemoData

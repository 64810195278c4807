#include "Varnic/Views/Ink/InkHistory.h"

#include "Varnic/Recording/RecordingController.h"

namespace varnic {

void InkHistory::begin(const std::vector<InkSample>& samples) {
    samples_.assign(samples.begin(), samples.end());
    first_ = 0;
    ++line_;
    Q_EMIT changed();
}

void InkHistory::append(InkSample sample) {
    samples_.push_back(sample);
    if (samples_.size() > RecordingController::samplesKept) {
        samples_.pop_front();
        ++first_;
    }
    Q_EMIT changed();
}

InkPen::Levels InkHistory::at(std::int64_t index) const {
    const InkSample& sample = samples_[static_cast<std::size_t>(index - first_)];
    return {.you = static_cast<double>(sample.you), .them = static_cast<double>(sample.them)};
}

InkPen::Levels InkHistory::latest() const {
    return samples_.empty() ? InkPen::Levels() : at(end() - 1);
}

} // namespace varnic

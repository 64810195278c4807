#include "VarnicCore/Pipeline/ProcessingStage.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

namespace varnic {

std::string ProcessingStage::label() const {
    switch (kind) {
    case Kind::transcribing:
        return fraction > 0 ? fmt::format("Writing the transcript… {}%", static_cast<int>(fraction * 100))
                            : "Writing the transcript…";
    case Kind::summarising:
        return "Summarising…";
    case Kind::done:
        return "Done";
    }
    return {};
}

ProgressBox::ProgressBox(std::size_t count) : count_(static_cast<double>(std::max<std::size_t>(count, 1))) {}

double ProgressBox::update(Speaker speaker, double value) {
    const std::lock_guard guard(lock_);
    parts_.at(static_cast<std::size_t>(speaker)) = value;
    return std::accumulate(parts_.begin(), parts_.end(), 0.0) / count_;
}

} // namespace varnic

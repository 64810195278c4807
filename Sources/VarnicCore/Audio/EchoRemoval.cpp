#include "VarnicCore/Audio/EchoRemoval.h"

#include <algorithm>

namespace varnic {

namespace {

/// A block of which less than this share is left, and no more than may be echo, is echo alone.
constexpr double mostLeft = 0.25;
/// Blocks for which the microphone's sound is kept after somebody has spoken into it: words end softly.
constexpr std::size_t hold = 8;
/// Seconds to learn from before anything is taken out: half an echo is misheard, and no longer told by its words.
constexpr double enough = 4;
/// The mean power of the quietest sound that there is something to learn from, -60 dB of full scale.
constexpr double audible = 1e-6;

} // namespace

EchoFilter::Block EchoRemoval::clean(std::span<const float, block> them, std::span<const float, block> you) {
    const EchoFilter::Remainder rest = filter_.remainder(them, you);
    learnt_ += EchoFilter::energy(them) > audible * block ? 1U : 0U;
    const double left = EchoFilter::energy(rest.samples);
    const bool isKnown = learnt() > enough;
    const bool isOwn = !isKnown || left > rest.doubt || left > mostLeft * EchoFilter::energy(you);
    sinceOwn_ = isOwn ? 0 : sinceOwn_ + 1;
    std::ranges::rotate(heard_, heard_.begin() + 1);
    heard_.back() = {rest.samples, sinceOwn_ <= hold};
    if (!isKnown) {
        std::ranges::copy(you, heard_.back().samples.begin());
    }
    if (isOwn) {
        // Words begin softly too.
        std::ranges::for_each(heard_, [](Heard& heard) { heard.isOwn = true; });
    }
    return heard_.front().isOwn ? heard_.front().samples : EchoFilter::Block{};
}

void EchoRemoval::interrupt() {
    filter_.interrupt();
    heard_ = {};
}

double EchoRemoval::learnt() const {
    return static_cast<double>(learnt_ * block) / rate;
}

} // namespace varnic

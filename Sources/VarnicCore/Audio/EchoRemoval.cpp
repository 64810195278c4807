#include "VarnicCore/Audio/EchoRemoval.h"

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

/// A block of which less than this share is left, and no more than may be echo, is echo alone.
constexpr double mostLeft = 0.25;
/// Blocks for which the near end is kept after somebody has spoken: words end softly.
constexpr std::size_t hold = 8;
/// Seconds to learn from before anything is taken out: a residual echo is transcribed wrongly, and no longer told by
/// its words.
constexpr double enough = 4;
/// The mean power of the quietest far end that there is something to learn from, -60 dB of full scale.
constexpr double audible = 1e-6;
/// How much of what a filter has left counts on after a block: about a second's.
constexpr double memory = 0.97;
/// The second filter takes over where it leaves less than this share of what the first one does.
constexpr double muchLess = 0.5;
/// A filter that leaves more than so many times what came has lost the path, and adds an echo of its own. What the
/// second one has learnt of that path holds it up too.
constexpr double lost = 1.1;
constexpr double beforeLost = 2;
/// Seconds of the far end that the second filter learns from, before it may take over and in all.
constexpr double beforeTakingOver = 1;
constexpr double longestTrial = 8;
/// Seconds of echo that tell that there is a path, and the mean power of the quietest one that counts, -70 dB of full
/// scale.
constexpr double certainEcho = 1;
constexpr double faint = 1e-7;

constexpr std::size_t blocksOf(double seconds) {
    return static_cast<std::size_t>(seconds * EchoRemoval::rate / EchoRemoval::block);
}

} // namespace

EchoFilter::Block EchoRemoval::clean(std::span<const float, block> them, std::span<const float, block> you) {
    const EchoFilter::Remainder rest = remainder(them, you);
    const double left = EchoFilter::energy(rest.samples);
    const double before = EchoFilter::energy(you);
    const bool isKnown = learnt() > enough;
    const bool isOwn = !isKnown || left > rest.doubt || left > mostLeft * before;
    if (isKnown && left < muchLess * before && before > faint * block) {
        ++echoes_;
    }
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

/// What the better of both filters leaves.
EchoFilter::Remainder EchoRemoval::remainder(std::span<const float, block> them, std::span<const float, block> you) {
    EchoFilter::Remainder rest = filter_.filter.remainder(them, you);
    EchoFilter::Remainder other = rival_.filter.remainder(them, you);
    if (EchoFilter::energy(them) <= audible * block) {
        return rest;
    }
    for (auto& [learner, left] : {std::pair(&filter_, &rest), std::pair(&rival_, &other)}) {
        ++learner->learnt;
        learner->left = memory * learner->left + EchoFilter::energy(left->samples);
    }
    came_ = memory * came_ + EchoFilter::energy(you);
    if (rival_.learnt > blocksOf(beforeTakingOver) && rival_.left < muchLess * filter_.left) {
        filter_ = std::exchange(rival_, Learner());
        return other;
    }
    const bool isLost = rival_.learnt > blocksOf(beforeLost) && filter_.left > lost * came_;
    if (isLost || rival_.learnt > blocksOf(longestTrial)) {
        rival_ = Learner();
        filter_.left = came_ = 0; // to be compared over the same time
    }
    return rest;
}

void EchoRemoval::interrupt() {
    filter_.filter.interrupt();
    rival_.filter.interrupt();
    heard_ = {};
}

double EchoRemoval::learnt() const {
    return static_cast<double>(filter_.learnt * block) / rate;
}

bool EchoRemoval::hasEcho() const {
    return echoes_ >= blocksOf(certainEcho);
}

} // namespace varnic

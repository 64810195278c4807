#include "VarnicPlatform/Capture/MicrophoneSide.h"

#include <fmt/format.h>

#include <algorithm>

namespace varnic {

namespace {

/// Seconds that another microphone may take to open before the user is told that it is not the one being recorded, and
/// for which one counts as delivering after its last audio.
constexpr double openingTime = 2;

constexpr const char* gone = "The microphone is gone.";

} // namespace

void MicrophoneSide::choose(const DeviceChoice& choice) {
    chosen_ = choice.name;
    chosenLabel_ = choice.label.empty() ? choice.name : choice.label;
    isFixed_ = !choice.isDefault();
}

std::vector<std::string> MicrophoneSide::tend(pw_core* core, const SoundGraph& graph, double now) {
    std::vector<std::string> problems;
    const auto microphones = graph.microphones();
    followMove(graph, microphones);
    const SoundNode* wanted = choose(microphones);
    if (wanted == nullptr) {
        const bool wasThere = current_ != nullptr;
        close();
        if (wasThere) {
            problems.emplace_back(gone);
        }
        if (!chosen_.empty()) {
            notice_ = gone;
        }
        return problems;
    }
    if (current_ && std::ranges::find(microphones, current_->source(), &SoundNode::id) == microphones.end()) {
        current_.reset();
    }
    if (!current_) {
        open(core, *wanted, now);
    } else if (currentWatchdog_.barks(now, current_->lastHeard())) {
        if (current_->lastHeard() > 0) {
            problems.emplace_back("The microphone stopped delivering sound.");
        }
        open(core, *nextOf(microphones, wanted), now);
    }
    if (current_->source() == wanted->id) {
        wanted_.reset();
    } else {
        tryWanted(core, *wanted, now);
    }
    verify(graph);
    notice_ = standIn(*wanted, now);
    return problems;
}

void MicrophoneSide::verify(const SoundGraph& graph) {
    for (const auto* stream : {&current_, &wanted_}) {
        if (*stream) {
            (*stream)->verify(graph);
        }
    }
}

void MicrophoneSide::close() {
    current_.reset();
    wanted_.reset();
    notice_.reset();
}

/// A stream that is moved away from a microphone that is there was moved by the user. But where the user has chosen one
/// in the settings, only a volume control says so: a session manager lets a stream follow the default once its target
/// was that.
void MicrophoneSide::followMove(const SoundGraph& graph, const std::vector<const SoundNode*>& microphones) {
    const SoundNode* linked = current_ ? current_->linked(graph) : nullptr;
    if (linked == nullptr || linked->id == current_->source() ||
        std::ranges::find(microphones, current_->source(), &SoundNode::id) == microphones.end()) {
        return;
    }
    current_->follow(*linked);
    if (isFixed_ && !graph.isMoved(current_->node())) {
        return;
    }
    chosen_ = linked->name;
    chosenLabel_ = linked->label();
}

/// The microphone that ought to be recorded; null where there is none. Unless the user has chosen one, a default that
/// changes while the chosen one is there is the user's new choice. One that takes the place of a chosen one that is
/// gone is the session manager's, and counts only until that returns.
const SoundNode* MicrophoneSide::choose(const std::vector<const SoundNode*>& microphones) {
    if (microphones.empty()) {
        return nullptr;
    }
    const SoundNode* offered = microphones.front();
    auto chosen = std::ranges::find(microphones, chosen_, &SoundNode::name);
    if (chosen_.empty() || (!isFixed_ && chosen != microphones.end() && offered->name != default_)) {
        chosen_ = offered->name;
        chosenLabel_ = offered->label();
        chosen = microphones.begin();
    }
    default_ = offered->name;
    return chosen == microphones.end() ? offered : *chosen;
}

/// The one to try after the current one: each of the others in turn, the wanted one alone where there is no other.
const SoundNode* MicrophoneSide::nextOf(const std::vector<const SoundNode*>& microphones,
                                        const SoundNode* wanted) const {
    std::vector<const SoundNode*> others = microphones;
    std::erase(others, wanted);
    if (others.empty()) {
        return wanted;
    }
    const auto current = std::ranges::find(others, current_->source(), &SoundNode::id);
    return current == others.end() || std::next(current) == others.end() ? others.front() : *std::next(current);
}

void MicrophoneSide::open(pw_core* core, const SoundNode& source, double now) {
    current_.reset(); // Two streams may not push into one ring.
    current_ = std::make_unique<MicrophoneStream>(core, source);
    current_->deliverTo(ring_);
    currentWatchdog_.attempted(now);
}

/// Listens to the wanted microphone beside the current one, and records it instead once it delivers.
void MicrophoneSide::tryWanted(pw_core* core, const SoundNode& wanted, double now) {
    if (wanted_ && wanted_->source() == wanted.id && wanted_->lastHeard() > 0) {
        current_.reset();
        current_ = std::move(wanted_);
        current_->deliverTo(ring_);
        currentWatchdog_.attempted(now);
        return;
    }
    const bool isNew = !wanted_ || wanted_->source() != wanted.id;
    if (isNew) {
        wantedSince_ = now;
        wantedWatchdog_ = {};
    }
    if (isNew || wantedWatchdog_.barks(now, 0)) {
        wanted_ = std::make_unique<MicrophoneStream>(core, wanted);
        wantedWatchdog_.attempted(now);
    }
}

std::optional<std::string> MicrophoneSide::standIn(const SoundNode& wanted, double now) const {
    if (!delivers() || now - current_->lastHeard() > openingTime) {
        return std::nullopt;
    }
    if (wanted.name != chosen_) {
        return fmt::format("“{}” is gone — recording from “{}” instead.", chosenLabel_, current_->label());
    }
    if (current_->source() != wanted.id && now - wantedSince_ > openingTime) {
        return fmt::format("“{}” delivers no sound — recording from “{}” instead.", chosenLabel_, current_->label());
    }
    return std::nullopt;
}

} // namespace varnic

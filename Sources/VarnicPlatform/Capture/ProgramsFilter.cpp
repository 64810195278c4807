#include "VarnicPlatform/Capture/ProgramsFilter.h"

#include "VarnicPlatform/Capture/ApplicationName.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace varnic {

namespace {

constexpr std::array<const char*, 2> sides{"FL", "FR"};

/// Which of our sides a program's channel goes to: left and right ones to theirs, all others to both.
bool belongs(std::string_view channel, std::size_t side) {
    const bool isLeft = channel == "FL" || channel == "RL" || channel == "SL" || channel == "FLC";
    const bool isRight = channel == "FR" || channel == "RR" || channel == "SR" || channel == "FRC";
    return side == 0 ? !isRight : !isLeft;
}

} // namespace

struct ProgramsFilter::Events {
    static constexpr pw_filter_events filter{
        .version = PW_VERSION_FILTER_EVENTS,
        .process = [](void* data, spa_io_position* position) { static_cast<ProgramsFilter*>(data)->process(position); },
    };
};

ProgramsFilter::ProgramsFilter(pw_core* core, FrameRing& ring)
    : core_(core), ring_(ring),
      filter_(pw_filter_new(core, "the other side of a call",
                            pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture",
                                              PW_KEY_APP_NAME, applicationName, PW_KEY_APP_ID, applicationId,
                                              PW_KEY_APP_ICON_NAME, applicationId, PW_KEY_NODE_NAME, "varnic-programs",
                                              PW_KEY_NODE_DESCRIPTION, "Varnic: the other side of a call", nullptr))) {
    if (filter_ == nullptr) {
        return;
    }
    pw_filter_add_listener(filter_, &listener_, &Events::filter, this);
    for (std::size_t side = 0; side < sides.size(); ++side) {
        inputs_[side] =
            pw_filter_add_port(filter_, PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, 0,
                               pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME,
                                                 sides[side], PW_KEY_AUDIO_CHANNEL, sides[side], nullptr),
                               nullptr, 0);
    }
    const bool hasPorts = std::ranges::find(inputs_, nullptr) == inputs_.end();
    wasConnected_ = hasPorts && pw_filter_connect(filter_, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0) >= 0;
}

ProgramsFilter::~ProgramsFilter() {
    links_.clear();
    if (filter_ != nullptr) {
        spa_hook_remove(&listener_);
        pw_filter_destroy(filter_);
    }
}

void ProgramsFilter::relink(const SoundGraph& graph, const SoundNode* output) {
    const auto wanted = wantedLinks(graph, output);
    std::erase_if(links_, [&](const auto& link) { return !wanted.contains(link.first); });
    for (const auto& [ends, program] : wanted) {
        if (!links_.contains(ends)) {
            links_[ends] = makeLink(ends);
        }
    }
    const auto isLinked = [&](const SoundNode* program) {
        return std::ranges::any_of(wanted, [&](const auto& link) { return link.second == program->id; });
    };
    isPlaying_ = std::ranges::any_of(graph.programs(),
                                     [&](const SoundNode* program) { return program->isRunning && isLinked(program); });
}

bool ProgramsFilter::hasFailed() const {
    if (filter_ == nullptr || !wasConnected_) {
        return true;
    }
    const pw_filter_state state = pw_filter_get_state(filter_, nullptr);
    return state == PW_FILTER_STATE_ERROR || state == PW_FILTER_STATE_UNCONNECTED;
}

bool ProgramsFilter::isReady() const {
    return !hasFailed() && pw_filter_get_state(filter_, nullptr) >= PW_FILTER_STATE_PAUSED;
}

/// In the real-time thread.
void ProgramsFilter::process(const spa_io_position* position) {
    if (position == nullptr) {
        return;
    }
    const spa_io_clock& clock = position->clock;
    const auto frames = static_cast<std::uint32_t>(clock.duration);
    std::array<const float*, 2> rows{};
    for (std::size_t side = 0; side < rows.size(); ++side) {
        rows[side] = static_cast<const float*>(pw_filter_get_dsp_buffer(inputs_[side], frames));
    }
    if (rows[0] != nullptr || rows[1] != nullptr) {
        ring_.push(static_cast<double>(clock.nsec) / SPA_NSEC_PER_SEC, static_cast<int>(clock.rate.denom), rows.data(),
                   frames);
    }
}

/// The links there ought to be, and the program that each comes from.
std::map<ProgramsFilter::Ends, std::uint32_t> ProgramsFilter::wantedLinks(const SoundGraph& graph,
                                                                          const SoundNode* output) const {
    std::map<Ends, std::uint32_t> wanted;
    if (hasFailed()) {
        return wanted;
    }
    const std::uint32_t own = pw_filter_get_node_id(filter_);
    auto programs = graph.programs();
    std::erase_if(programs,
                  [&](const SoundNode* program) { return output != nullptr && !graph.isLinked(program->id, *output); });
    for (const auto& [from, source] : graph.ports()) {
        if (!source.isOutput || std::ranges::find(programs, source.node, &SoundNode::id) == programs.end()) {
            continue;
        }
        for (const auto& [to, input] : graph.ports()) {
            if (input.node == own && !input.isOutput && belongs(source.channel, input.channel == sides[0] ? 0 : 1)) {
                wanted[{from, to}] = source.node;
            }
        }
    }
    return wanted;
}

std::unique_ptr<pw_proxy, ProgramsFilter::Destroy> ProgramsFilter::makeLink(Ends ends) const {
    // Passive: the link alone keeps no device running.
    pw_properties* properties = pw_properties_new(PW_KEY_LINK_PASSIVE, "true", nullptr);
    pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_PORT, "%u", ends.first);
    pw_properties_setf(properties, PW_KEY_LINK_INPUT_PORT, "%u", ends.second);
    void* link =
        pw_core_create_object(core_, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties->dict, 0);
    pw_properties_free(properties);
    return std::unique_ptr<pw_proxy, Destroy>(static_cast<pw_proxy*>(link));
}

} // namespace varnic

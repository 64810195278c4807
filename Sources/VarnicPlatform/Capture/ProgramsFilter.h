#pragma once

#include "VarnicPlatform/Capture/FrameRing.h"
#include "VarnicPlatform/Capture/SoundGraph.h"

#include <pipewire/filter.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>

namespace varnic {

/// What other programs play, added up into a ring, in stereo at the graph's rate. It is linked to each program's
/// stream beside the output that plays it. Made, called and destroyed with the loop locked or in its thread.
class ProgramsFilter {
public:
    ProgramsFilter(pw_core* core, FrameRing& ring);
    ProgramsFilter(const ProgramsFilter&) = delete;
    ProgramsFilter& operator=(const ProgramsFilter&) = delete;
    ~ProgramsFilter();

    /// Makes and drops links for the programs that are there now: those that play into the output or, where that is
    /// null, all of them.
    void relink(const SoundGraph& graph, const SoundNode* output);

    /// Whether a program that it is linked to plays.
    [[nodiscard]] bool isPlaying() const { return isPlaying_; }

    /// Whether the filter has been cut off, or never could be made.
    [[nodiscard]] bool hasFailed() const;
    /// Whether the server has taken it in.
    [[nodiscard]] bool isReady() const;

private:
    struct Events;

    struct Destroy {
        void operator()(pw_proxy* proxy) const { pw_proxy_destroy(proxy); }
    };

    /// Ids of a program's port and of one of ours.
    using Ends = std::pair<std::uint32_t, std::uint32_t>;

    void process(const spa_io_position* position);
    [[nodiscard]] std::map<Ends, std::uint32_t> wantedLinks(const SoundGraph& graph, const SoundNode* output) const;
    [[nodiscard]] std::unique_ptr<pw_proxy, Destroy> makeLink(Ends ends) const;

    pw_core* core_;
    FrameRing& ring_;
    pw_filter* filter_;
    spa_hook listener_{};
    std::array<void*, 2> inputs_{};
    std::map<Ends, std::unique_ptr<pw_proxy, Destroy>> links_;
    bool wasConnected_ = false;
    bool isPlaying_ = false;
};

} // namespace varnic

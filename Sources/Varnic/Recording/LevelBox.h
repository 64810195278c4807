#pragma once

#include "VarnicCore/Models/Speaker.h"

#include <algorithm>
#include <mutex>

namespace varnic {

/// How loud each side is at one tick, 0 to 1.
struct InkSample {
    float you = 0;
    float them = 0;

    bool operator==(const InkSample&) const = default;
};

/// How loud each side is now, for the eye: levels jump up at once and fade step by step. Any thread.
class LevelBox {
public:
    /// Falls to half at the most.
    void set(Speaker speaker, float value) {
        const std::lock_guard guard(lock_);
        float& level = speaker == Speaker::you ? levels_.you : levels_.them;
        level = std::max(level * 0.5F, value);
    }

    /// The levels as they stand; afterwards they have faded by one tick.
    InkSample tick() {
        const std::lock_guard guard(lock_);
        const InkSample levels = levels_;
        levels_.you *= fade;
        levels_.them *= fade;
        return levels;
    }

private:
    static constexpr float fade = 0.82F;

    std::mutex lock_;
    InkSample levels_;
};

} // namespace varnic

#pragma once

#include <memory>
#include <span>
#include <vector>

namespace soundtouch {
class SoundTouch;
}

namespace varnic {

/// Makes audio faster or slower and leaves its pitch. Takes and gives interleaved samples as a PlaybackQueue takes
/// them. One thread at a time.
class TimeStretch {
public:
    TimeStretch();
    TimeStretch(TimeStretch&&) noexcept;
    TimeStretch& operator=(TimeStretch&&) noexcept;
    ~TimeStretch();

    /// Forgets what is still to be given. The next samples are a beginning, which is given as it is.
    void clear();

    /// So many seconds of audio take one from here on: in what `stretched` gives next, without a break.
    void setSpeed(double speed);

    /// Takes samples and gives those that are ready, valid until the next call; some tenths of a second are held back.
    std::span<const float> stretched(std::span<const float> samples);

    /// Gives what was held back, at the end.
    std::span<const float> rest();

private:
    std::span<const float> ready();

    std::unique_ptr<soundtouch::SoundTouch> engine_;
    std::vector<float> out_;
};

} // namespace varnic

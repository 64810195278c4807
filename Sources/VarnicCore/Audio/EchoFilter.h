#pragma once

#include "VarnicCore/Audio/RealTransform.h"

#include <array>
#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace varnic {

/// Learns the echo path from the far end to the microphone (delay, loudness, the room's reverberation), and tells what
/// of the microphone's signal does not come from the far end. A Kalman filter of the path's spectrum in partitions,
/// after Enzner and Vary, "Frequency-domain adaptive Kalman filter for acoustic echo control in hands-free telephones"
/// (2006), and Kuech et al., "State-space architecture of the partitioned-block-based acoustic echo controller" (2014):
/// it learns much from blocks that are mostly echo and little from double talk, and it knows how much residual echo
/// there may be. Any rate; a copy goes on from what was learnt. Not thread-safe, and copies share a thread.
///
/// webrtc-audio-processing (0.3) takes out as much echo in as much time, but suppresses the near end along with it: in
/// double talk a third of your words is lost, with this filter a twelfth, hardly more than without any echo.
class EchoFilter {
public:
    /// Samples that are looked at in one go.
    static constexpr std::size_t block = 512;
    /// The latest echo that is recognised, in blocks after the far end: 0.5 s at 16 kHz.
    static constexpr std::size_t partitions = 16;

    using Block = std::array<float, block>;

    /// What of a block does not come from the far end.
    struct Remainder {
        Block samples{};
        /// The energy of the residual echo that may be in it.
        double doubt = 0;
    };

    /// The sum of the squares.
    static double energy(std::span<const float> samples);

    EchoFilter();

    /// The next block of both, from the same time.
    Remainder remainder(std::span<const float, block> farEnd, std::span<const float, block> microphone);

    /// What comes next doesn't follow on what came last; the path stays known.
    void interrupt();

private:
    static constexpr std::size_t bins = block + 1;

    using Spectrum = std::vector<std::complex<float>>;
    using Powers = std::vector<float>;

    void take(std::span<const float, block> farEnd);
    void learn(const Spectrum& error, const Powers& total);
    void confine(Spectrum& partition, std::span<float> response);

    RealTransform transform_;
    /// The last two blocks of the far end.
    std::vector<float> recent_;
    /// The spectra of `recent_` at the last blocks, newest at `newest_`, and how many blocks it has been silent.
    std::vector<Spectrum> farEnd_;
    std::size_t newest_ = 0;
    std::size_t silent_ = partitions + 1;
    /// The path, a spectrum for each block of delay, and the expected square of its error.
    std::vector<Spectrum> path_;
    /// The partition that was held to its time last.
    std::size_t confined_ = 0;
    /// Blocks that were learnt from.
    std::size_t learnt_ = 0;
    std::vector<Powers> error_;
    /// The power of what does not come from the far end, smoothed.
    Powers nearEnd_;
};

} // namespace varnic

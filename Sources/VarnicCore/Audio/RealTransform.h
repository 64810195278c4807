#pragma once

#include <complex>
#include <cstddef>
#include <memory>
#include <span>

namespace varnic {

/// The discrete Fourier transform of real samples, by FFmpeg. Not thread-safe, and copies share a thread.
class RealTransform {
public:
    /// Of `size` samples, a power of two of at least 4. Throws std::bad_alloc.
    explicit RealTransform(std::size_t size);

    /// `size` samples to `size / 2 + 1` bins.
    void forward(std::span<const float> samples, std::span<std::complex<float>> bins);

    /// Gives back what `forward` was given.
    void backward(std::span<const std::complex<float>> bins, std::span<float> samples);

private:
    class Plan;
    std::shared_ptr<Plan> plan_;
};

} // namespace varnic

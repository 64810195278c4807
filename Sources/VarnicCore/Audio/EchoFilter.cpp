#include "VarnicCore/Audio/EchoFilter.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <span>

namespace varnic {

namespace {

constexpr std::size_t window = 2 * EchoFilter::block;
/// How much of the path stays as it is from block to block: volumes are turned, people move, clocks drift.
constexpr float steadiness = 0.998F;
constexpr float change = 1 - steadiness * steadiness;
/// How quickly the power of the rest is forgotten, a block.
constexpr float memory = 0.9F;
/// The share of a window that a block is.
constexpr float share = 0.5F;
/// Below the power of any audio; keeps divisions finite.
constexpr float leastPower = 1e-8F;
/// Partitions whose response is held to their time at each block, in turn, once the path is known. Holding all of them
/// takes as long as the rest of the filter, and takes out no more: 21.5 dB of the echo in a room of a quarter of a
/// second, two of them 21.4. At first all are held: a new path is found sooner.
constexpr std::size_t confinedAtOnce = 2;
constexpr std::size_t blocksAnew = 32;
/// Before anything is known, the echo may be as loud as the far end.
constexpr float unknown = 1;

// std::complex multiplies with care for infinities, at several times the cost.

std::complex<float> product(std::complex<float> a, std::complex<float> b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

} // namespace

double EchoFilter::energy(std::span<const float> samples) {
    return std::transform_reduce(samples.begin(), samples.end(), 0.0, std::plus<>(), [](float sample) {
        const auto value = static_cast<double>(sample);
        return value * value;
    });
}

EchoFilter::EchoFilter()
    : transform_(window), recent_(window), farEnd_(partitions, Spectrum(bins)), path_(partitions, Spectrum(bins)),
      error_(partitions, Powers(bins, unknown)), nearEnd_(bins, leastPower) {}

EchoFilter::Remainder EchoFilter::remainder(std::span<const float, block> farEnd,
                                            std::span<const float, block> microphone) {
    Remainder rest;
    std::ranges::copy(microphone, rest.samples.begin());
    if (!std::isfinite(energy(farEnd)) || !std::isfinite(energy(microphone))) {
        return rest; // what is no number counts as silence
    }
    take(farEnd);
    if (silent_ > partitions) {
        return rest;
    }
    Spectrum echo(bins);
    Powers total(bins);
    for (std::size_t delay = 0; delay < partitions; ++delay) {
        const Spectrum& spectrum = farEnd_[(newest_ + delay) % partitions];
        for (std::size_t bin = 0; bin < bins; ++bin) {
            echo[bin] += product(path_[delay][bin], spectrum[bin]);
            total[bin] += error_[delay][bin] * std::norm(spectrum[bin]);
        }
    }
    // Each bin but the first and the last stands for two.
    const float doubt = 2 * std::reduce(total.begin(), total.end(), 0.0F) - total.front() - total.back();
    rest.doubt = static_cast<double>(share * doubt / window);
    std::vector<float> samples(window);
    transform_.backward(echo, samples);
    std::ranges::transform(microphone, std::span(samples).subspan(block), rest.samples.begin(), std::minus<>());
    std::fill_n(samples.begin(), block, 0.0F);
    std::ranges::copy(rest.samples, samples.begin() + block);
    Spectrum error(bins);
    transform_.forward(samples, error);
    learn(error, total);
    return rest;
}

void EchoFilter::interrupt() {
    std::ranges::fill(recent_, 0.0F);
    std::ranges::fill(farEnd_, Spectrum(bins));
    silent_ = partitions + 1;
}

void EchoFilter::take(std::span<const float, block> farEnd) {
    silent_ = energy(farEnd) > static_cast<double>(leastPower) ? 0 : silent_ + 1;
    std::copy(recent_.begin() + block, recent_.end(), recent_.begin());
    std::ranges::copy(farEnd, recent_.begin() + block);
    newest_ = (newest_ + partitions - 1) % partitions;
    transform_.forward(recent_, farEnd_[newest_]);
}

/// Moves the path by what the error tells of it: the more, the less is known and the quieter the near end is.
void EchoFilter::learn(const Spectrum& error, const Powers& total) {
    Powers certainty(bins);
    for (std::size_t bin = 0; bin < bins; ++bin) {
        nearEnd_[bin] = memory * nearEnd_[bin] + (1 - memory) * std::norm(error[bin]);
        certainty[bin] = 1 / (total[bin] + nearEnd_[bin] / share + leastPower);
    }
    for (std::size_t delay = 0; delay < partitions; ++delay) {
        const Spectrum& spectrum = farEnd_[(newest_ + delay) % partitions];
        Powers& doubt = error_[delay];
        Spectrum& path = path_[delay];
        for (std::size_t bin = 0; bin < bins; ++bin) {
            const float gain = doubt[bin] * certainty[bin];
            doubt[bin] = steadiness * steadiness * (1 - share * gain * std::norm(spectrum[bin])) * doubt[bin] +
                         change * std::norm(path[bin]);
            path[bin] += product(std::conj(spectrum[bin]), error[bin]) * gain;
        }
    }
    std::vector<float> response(window);
    const std::size_t held = ++learnt_ > blocksAnew ? confinedAtOnce : partitions;
    for (std::size_t count = 0; count < held; ++count) {
        confined_ = (confined_ + 1) % partitions;
        confine(path_[confined_], response);
    }
}

/// A partition answers for one block of delay. `response` is room for it.
void EchoFilter::confine(Spectrum& partition, std::span<float> response) {
    transform_.backward(partition, response);
    std::ranges::fill(response.subspan(block), 0.0F);
    transform_.forward(response, partition);
}

} // namespace varnic

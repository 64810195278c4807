#include "VarnicPlatform/Capture/Tones.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <fstream>
#include <numbers>
#include <numeric>

namespace varnic::Tones {

namespace {

constexpr double turn = 2 * std::numbers::pi;

template <typename Integer>
void put(std::ofstream& out, Integer value) {
    out.write(reinterpret_cast<const char*>(&value), sizeof value);
}

} // namespace

std::vector<std::vector<float>> sines(const std::vector<double>& frequencies, double seconds, int rate) {
    std::vector<std::vector<float>> rows;
    for (const double frequency : frequencies) {
        std::vector<float>& row = rows.emplace_back(static_cast<std::size_t>(seconds * rate));
        for (std::size_t i = 0; i < row.size(); ++i) {
            row[i] = static_cast<float>(loudness * std::sin(turn * frequency * static_cast<double>(i) / rate));
        }
    }
    return rows;
}

std::vector<float> sweep(int rate) {
    constexpr double length = 0.2;
    std::vector<float> samples(static_cast<std::size_t>(length * rate));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double time = static_cast<double>(i) / rate;
        samples[i] = static_cast<float>(loudness * std::sin(turn * (500 * time + 2000 * time * time / (2 * length))));
    }
    return samples;
}

void write(const std::filesystem::path& file, const std::vector<std::vector<float>>& rows, int rate) {
    std::ofstream out(file, std::ios::binary);
    const auto channels = static_cast<std::uint16_t>(rows.size());
    const auto frameBytes = static_cast<std::uint16_t>(2 * channels);
    const auto bytes = static_cast<std::uint32_t>(rows.front().size() * frameBytes);
    out << "RIFF";
    put(out, bytes + 36);
    out << "WAVEfmt ";
    put(out, std::uint32_t{16});
    put(out, std::uint16_t{1});
    put(out, channels);
    put(out, static_cast<std::uint32_t>(rate));
    put(out, static_cast<std::uint32_t>(rate) * frameBytes);
    put(out, frameBytes);
    put(out, std::uint16_t{16});
    out << "data";
    put(out, bytes);
    for (std::size_t frame = 0; frame < rows.front().size(); ++frame) {
        for (const std::vector<float>& row : rows) {
            put(out, static_cast<std::int16_t>(std::lround(row[frame] * 32767)));
        }
    }
}

double amplitude(std::span<const float> samples, double frequency) {
    std::complex<double> sum;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        sum += static_cast<double>(samples[i]) * std::polar(1.0, -turn * frequency * static_cast<double>(i) / 48'000);
    }
    return samples.empty() ? 0 : 2 * std::abs(sum) / static_cast<double>(samples.size());
}

std::size_t find(std::span<const float> pattern, std::span<const float> samples) {
    constexpr std::size_t stride = 4;
    const auto thinned = [](std::span<const float> row) {
        std::vector<float> thin;
        for (std::size_t i = 0; i < row.size(); i += stride) {
            thin.push_back(row[i]);
        }
        return thin;
    };
    const std::vector<float> needle = thinned(pattern);
    const std::vector<float> hay = thinned(samples);
    std::size_t best = 0;
    float most = 0;
    for (std::size_t at = 0; at + needle.size() <= hay.size(); ++at) {
        const float* place = hay.data() + at;
        const float fit = std::inner_product(needle.begin(), needle.end(), place, 0.0F);
        if (fit > most) {
            most = fit;
            best = at;
        }
    }
    return best * stride;
}

} // namespace varnic::Tones

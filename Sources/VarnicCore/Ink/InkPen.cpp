#include "VarnicCore/Ink/InkPen.h"

#include <algorithm>
#include <cmath>

namespace varnic::InkPen {

namespace {

/// How hard the pen presses, 0.7 to 1.25; another pressure for each block of values, the same one every time.
double pressure(double u) {
    constexpr double blockLength = 7;
    const auto block = static_cast<std::uint64_t>(static_cast<std::int64_t>(u / blockLength));
    const std::uint64_t a = block * 0x9E3779B97F4A7C15U;
    const std::uint64_t b = (a ^ (a >> 29U)) * 0xBF58476D1CE4E5B9U;
    const std::uint64_t hash = b ^ (b >> 32U);
    return 0.7 + 0.55 * static_cast<double>(hash % 1000) / 1000;
}

double loudest(Levels levels) {
    return std::max(levels.you, levels.them);
}

} // namespace

Point point(double t, double level, const Line& line) {
    constexpr double turn = 0.9;
    const double u = static_cast<double>(line.phase) + t;
    const double r = level * line.amplitude * pressure(u);
    return {.x = t * line.step + line.startX - std::sin(turn * u) * std::min(0.22 * r, 2.4 * line.step),
            .y = line.mid - 0.85 * r * std::cos(turn * u) + 0.15 * r};
}

Ink ink(Levels levels) {
    if (loudest(levels) < quietLevel) {
        return Ink::quiet;
    }
    return levels.them <= levels.you ? Ink::you : Ink::them;
}

Piece piece(std::int64_t index, Levels before, Levels now, const Line& line) {
    const double level = loudest(now);
    const double previous = loudest(before);
    Piece result{.ink = ink(now), .width = level * 2.6 + 1.1, .points = {}};
    for (std::size_t i = 0; i < result.points.size(); ++i) {
        const double part = static_cast<double>(i) / static_cast<double>(result.points.size() - 1);
        result.points[i] = point(static_cast<double>(index - 1) + part, previous * (1 - part) + level * part, line);
    }
    return result;
}

double fade(double x, double width) {
    return std::clamp(x / std::max(width, 1.0) * 1.6, 0.12, 1.0);
}

std::vector<Piece> draw(const std::vector<Levels>& values, const Line& line, std::optional<double> fadeWidth) {
    std::vector<Piece> pieces;
    for (std::size_t i = 1; i < values.size(); ++i) {
        pieces.push_back(piece(static_cast<std::int64_t>(i), values[i - 1], values[i], line));
        if (fadeWidth) {
            pieces.back().opacity = fade(pieces.back().points.back().x, *fadeWidth);
        }
    }
    return pieces;
}

} // namespace varnic::InkPen

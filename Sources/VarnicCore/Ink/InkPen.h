#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

/// The pen that writes a call as a line of ink: loud speech makes loops, as cursive does, silence a straight line. The
/// same values always give the same line. Lengths are points, y grows downwards. Pure.
namespace varnic::InkPen {

struct Point {
    double x = 0;
    double y = 0;

    bool operator==(const Point&) const = default;
};

/// How loud each side is at one step of the line, 0 to 1.
struct Levels {
    double you = 0;
    double them = 0;

    bool operator==(const Levels&) const = default;
};

/// The colour of a piece of line.
enum class Ink { quiet, you, them };

/// Below this level nobody speaks.
inline constexpr double quietLevel = 0.08;

/// Where a line lies on the paper.
struct Line {
    /// From one value to the next.
    double step = 1;
    double startX = 0;
    /// Values that came before the first one, whose loops this line goes on with.
    std::int64_t phase = 0;
    /// The height at which silence is written.
    double mid = 0;
    /// How far full level swings, before the pen's own pressure.
    double amplitude = 0;
};

/// What one stroke of the pen draws; with a round cap and round joins.
struct Piece {
    Ink ink = Ink::quiet;
    double width = 0;
    /// 0 to 1.
    double opacity = 1;
    /// The first is the last one of the piece before.
    std::array<Point, 5> points;
};

/// Where the pen is at the place `t` of the line, counted in values, at the given level.
Point point(double t, double level, const Line& line);

/// Who leads at these levels; you do when both are equal.
Ink ink(Levels levels);

/// The piece that leads to value `index` (1 or more) from the one before.
Piece piece(std::int64_t index, Levels before, Levels now, const Line& line);

/// The opacity of a piece that ends at `x`, on a line whose old end at the left fades over `width`.
double fade(double x, double width);

/// The whole line, from left to right; nothing for fewer than two values. With `fadeWidth` its old end fades.
std::vector<Piece> draw(const std::vector<Levels>& values, const Line& line,
                        std::optional<double> fadeWidth = std::nullopt);

} // namespace varnic::InkPen

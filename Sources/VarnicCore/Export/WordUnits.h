#pragma once

#include "VarnicCore/Export/StyledText.h"

#include <cmath>
#include <tuple>

/// Lengths and colours as RTF and Word files count them. For the implementation files of this folder.
namespace varnic::WordUnits {

/// Twentieths of a point.
inline int twips(double points) {
    return static_cast<int>(std::lround(points * 20));
}

inline int halfPoints(double points) {
    return static_cast<int>(std::lround(points * 2));
}

inline int eighthPoints(double points) {
    return static_cast<int>(std::lround(points * 8));
}

/// 240ths of a line.
inline int lines(double multiple) {
    return static_cast<int>(std::lround(multiple * 240));
}

/// Red, green and blue, 0 to 255.
inline std::tuple<int, int, int> bytes(const Colour& colour) {
    const auto byte = [](double part) { return static_cast<int>(std::lround(part * 255)); };
    return {byte(colour.red), byte(colour.green), byte(colour.blue)};
}

} // namespace varnic::WordUnits

#pragma once

namespace varnic {

/// Points.
struct PageSize {
    double width = 0;
    double height = 0;

    bool operator==(const PageSize&) const = default;
};

inline constexpr PageSize a4{595, 842};

/// The margin on all sides of an exported page, in points.
inline constexpr double pageMargin = 56;

} // namespace varnic

#pragma once

#include <string>

/// A number of seconds as text. Values must be finite.
namespace varnic::Clock {

/// A moment in a call: "2:05", from one hour up "1:02:03". Below 0 counts as 0.
std::string stamp(double seconds);

/// A length in words: "under a minute", "12 min", "1 hr 5 min", "2 hr".
std::string length(double seconds);

} // namespace varnic::Clock

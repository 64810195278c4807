#pragma once

namespace varnic {

/// The property, with the value "true", that marks the playback streams of this program: capture leaves them out.
inline constexpr const char* playbackMarker = "varnic.playback";

} // namespace varnic

#pragma once

namespace varnic {

/// How the streams name the program to sound servers and volume controls.
inline constexpr const char* applicationName = "Varnic";
/// Also the name of its icon.
inline constexpr const char* applicationId = "app.brevin.varnic";

} // namespace varnic

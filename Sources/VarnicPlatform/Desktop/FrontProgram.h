#pragma once

#include <optional>
#include <string>

/// Whose window has the user's attention.
namespace varnic::FrontProgram {

/// The bundle identifier of the calling application or browser in front; nothing for any other program, and where there
/// is no X server to ask, as for windows of Wayland's own. Waits for the X server's answers. Any thread.
std::optional<std::string> identifier();

} // namespace varnic::FrontProgram

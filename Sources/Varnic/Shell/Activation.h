#pragma once

#include <string>

namespace varnic {

/// Hands the right to come to the front to the window that is activated next; a desktop may not allow it without one.
/// Qt's platforms read the token from the environment, where this puts it. Nothing happens for an empty token.
void useActivationToken(const std::string& token);

} // namespace varnic

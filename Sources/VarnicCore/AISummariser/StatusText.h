#pragma once

#include <string_view>

namespace varnic {

/// The usual words for an HTTP status, such as "not found"; those of its class (4xx, 5xx) for a less known one.
std::string_view statusText(int status);

} // namespace varnic

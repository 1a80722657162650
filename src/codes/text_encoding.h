// Bytes of codes as text.
#pragma once

#include <string>
#include <string_view>

namespace doccam::codes {

bool isUtf8(std::string_view bytes);

// In UTF-8, taking bytes that are not for Shift-JIS, as Japanese encoders write it unannounced, or
// else for Latin-1.
std::string asUtf8(std::string_view bytes);

} // namespace doccam::codes

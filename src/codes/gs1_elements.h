// Strings of GS1 elements: application identifiers, each followed by its value.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace doccam::codes {

// Whether the text consists of elements with byte 29 behind values of variable length, except the
// last one. Values of fixed length must have it, and digits alone.
bool isElementString(std::string_view text);

// Such a string from the form that people read, with identifiers in parentheses. Nothing if it is
// no such form.
std::optional<std::string> elementStringOf(std::string_view readable);

} // namespace doccam::codes

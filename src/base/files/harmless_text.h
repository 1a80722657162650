// Texts from outside in messages for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace doccam {

// Escapes control characters, except those in kept, and invalid UTF-8 as \xNN: names of files and
// devices and the texts of codes must not control the terminal.
std::string harmlessText(std::string_view text, std::string_view kept = "");

} // namespace doccam

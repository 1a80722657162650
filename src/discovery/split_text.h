// Taking texts apart.
#pragma once

#include <string>
#include <vector>

namespace doccam {

// The pieces of text between the occurrences of pattern, empty ones too. Never empty; an empty
// pattern gives the text itself.
std::vector<std::string> splitText(std::string text, const std::string& pattern);

} // namespace doccam

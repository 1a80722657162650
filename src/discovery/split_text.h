// Splitting texts.
#pragma once

#include <string>
#include <vector>

namespace doccam {

// The pieces of text between the occurrences of pattern, including empty ones. Never empty; an
// empty pattern gives the whole text.
std::vector<std::string> splitText(std::string text, const std::string& pattern);

} // namespace doccam

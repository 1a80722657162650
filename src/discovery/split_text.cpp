#include "discovery/split_text.h"

namespace doccam {

std::vector<std::string> splitText(std::string text, const std::string& pattern) {
    if (pattern.empty()) {
        return {std::move(text)};
    }
    std::vector<std::string> pieces;
    text += pattern;
    std::size_t start = 0;
    for (std::size_t found = text.find(pattern); found != std::string::npos;
         found = text.find(pattern, start)) {
        pieces.push_back(text.substr(start, found - start));
        start = found + pattern.size();
    }
    return pieces;
}

} // namespace doccam

// Splitting any text at any pattern.
#include "fuzz_target.h"
#include "input.h"

#include <doccam/doccam.hpp>

namespace {

std::string textOf(std::span<const unsigned char> bytes) {
    return {bytes.begin(), bytes.end()};
}

// Tries the pattern at one position after the other.
std::vector<std::string> plainSplit(const std::string& text, const std::string& pattern) {
    const std::string ended = text + pattern;
    std::vector<std::string> pieces;
    std::size_t start = 0;
    for (std::size_t at = 0; at + pattern.size() <= ended.size(); ++at) {
        if (at >= start && ended.compare(at, pattern.size(), pattern) == 0) {
            pieces.push_back(ended.substr(start, at - start));
            start = at + pattern.size();
        }
    }
    return pieces;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    doccam::test::Input input(data, size);
    const std::string pattern = textOf(input.take(input.byte() % 8));
    const std::string text = textOf(input.takeRest());
    const auto pieces = split(text, pattern);
    doccam::test::require(pieces ==
                          (pattern.empty() ? std::vector{text} : plainSplit(text, pattern)));
    return 0;
}

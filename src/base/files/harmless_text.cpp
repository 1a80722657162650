#include "base/files/harmless_text.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace doccam {
namespace {

// The length of the UTF-8 character that text starts with; 0 for a control or invalid one.
std::size_t harmlessLetter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return std::iscntrl(first) == 0 ? 1 : 0;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    const bool whole =
        first >= 0xC2 && first <= 0xF4 && text.size() >= length &&
        std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length),
                    [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; });
    // U+0080 to U+009F are the C1 control characters.
    const bool control = first == 0xC2 && whole && static_cast<unsigned char>(text[1]) < 0xA0;
    return whole && !control ? length : 0;
}

} // namespace

std::string harmlessText(std::string_view text, std::string_view kept) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string shown;
    while (!text.empty()) {
        const bool asItIs = kept.find(text.front()) != std::string_view::npos;
        const std::size_t length = asItIs ? 1 : harmlessLetter(text);
        if (length > 0) {
            shown += text.substr(0, length);
        } else {
            const auto code = static_cast<unsigned char>(text.front());
            shown += {'\\', 'x', kDigits[code / 16], kDigits[code % 16]};
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return shown;
}

} // namespace doccam

// Escaping file names in messages for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace doccam {

// Escapes control characters, including UTF-8's C1 set, as \xNN, as they could control the
// terminal.
inline std::string harmlessText(std::string_view text) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string shown;
    char before = '\0';
    for (const char letter : text) {
        const auto code = static_cast<unsigned char>(letter);
        const bool second = before == '\xC2' && code >= 0x80 && code < 0xA0;
        if (code < ' ' || code == 0x7F || second) {
            shown += {'\\', 'x', kDigits[code / 16], kDigits[code % 16]};
        } else {
            shown += letter;
        }
        before = letter;
    }
    return shown;
}

} // namespace doccam

#include "codes/text_encoding.h"

#include <iconv.h>

#include <cstddef>
#include <optional>

namespace doccam::codes {
namespace {

using Byte = unsigned char;

constexpr Byte byteAt(std::string_view bytes, std::size_t place) {
    return place < bytes.size() ? static_cast<Byte>(bytes[place]) : 0;
}

// The length of the character at that place; 0 if it is none.
std::size_t characterLength(std::string_view bytes, std::size_t place) {
    const Byte first = byteAt(bytes, place);
    const std::size_t length = first < 0x80                    ? 1
                               : first >= 0xc2 && first < 0xe0 ? 2
                               : first >= 0xe0 && first < 0xf0 ? 3
                               : first >= 0xf0 && first < 0xf5 ? 4
                                                               : 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(bytes, place + i) & 0xc0) != 0x80) {
            return 0;
        }
    }
    const Byte second = byteAt(bytes, place + 1);
    const bool overlong = (first == 0xe0 && second < 0xa0) || (first == 0xf0 && second < 0x90);
    const bool beyond = (first == 0xed && second >= 0xa0) || (first == 0xf4 && second >= 0x90);
    return overlong || beyond ? 0 : length;
}

constexpr bool isPairStart(Byte byte) {
    return (byte >= 0x81 && byte <= 0x9f) || (byte >= 0xe0 && byte <= 0xfc);
}

constexpr bool isPairEnd(Byte byte) {
    return byte >= 0x40 && byte <= 0xfc && byte != 0x7f;
}

// Whether all bytes above 127 are Japanese letters, at least half of them in pairs: single ones are
// Latin-1 as often.
bool isLikeShiftJis(std::string_view bytes) {
    std::size_t pairs = 0;
    std::size_t singles = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const Byte byte = byteAt(bytes, i);
        if (isPairStart(byte)) {
            if (!isPairEnd(byteAt(bytes, ++i))) {
                return false;
            }
            ++pairs;
        } else if (byte >= 0xa1 && byte <= 0xdf) {
            ++singles;
        } else if (byte >= 0x80 || (byte < 0x20 && byte != '\n' && byte != '\r' && byte != '\t')) {
            return false;
        }
    }
    return pairs >= singles && pairs > 1;
}

std::string fromLatin1(std::string_view bytes) {
    std::string text;
    for (const char letter : bytes) {
        const auto byte = static_cast<Byte>(letter);
        if (byte < 0x80) {
            text += letter;
        } else {
            text += static_cast<char>(0xc0 | byte >> 6);
            text += static_cast<char>(0x80 | (byte & 0x3f));
        }
    }
    return text;
}

class ShiftJis {
  public:
    ShiftJis() = default;
    ShiftJis(const ShiftJis&) = delete;
    ShiftJis& operator=(const ShiftJis&) = delete;

    ~ShiftJis() {
        if (isOpen()) {
            iconv_close(conversion_);
        }
    }

    // Nothing if the system lacks the conversion, or bytes are no such text.
    std::optional<std::string> asUtf8(std::string_view bytes) const {
        std::string from(bytes);
        std::string text(bytes.size() * 3, '\0');
        char* source = from.data();
        char* target = text.data();
        std::size_t left = from.size();
        std::size_t room = text.size();
        if (!isOpen() || iconv(conversion_, &source, &left, &target, &room) != 0) {
            return std::nullopt;
        }
        text.resize(text.size() - room);
        return text;
    }

  private:
    bool isOpen() const { return conversion_ != reinterpret_cast<iconv_t>(-1); }

    // Microsoft's, which has all letters of the standard one.
    iconv_t conversion_ = iconv_open("UTF-8", "CP932");
};

} // namespace

bool isUtf8(std::string_view bytes) {
    std::size_t place = 0;
    while (place < bytes.size()) {
        const std::size_t length = characterLength(bytes, place);
        if (length == 0) {
            return false;
        }
        place += length;
    }
    return true;
}

std::string asUtf8(std::string_view bytes) {
    if (isUtf8(bytes)) {
        return std::string(bytes);
    }
    if (isLikeShiftJis(bytes)) {
        if (std::optional<std::string> text = ShiftJis().asUtf8(bytes)) {
            return *std::move(text);
        }
    }
    return fromLatin1(bytes);
}

} // namespace doccam::codes

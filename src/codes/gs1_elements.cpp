#include "codes/gs1_elements.h"

#include <algorithm>
#include <cstddef>

namespace doccam::codes {
namespace {

constexpr char kSeparator = '\x1d';

// The identifiers that begin with one of these two digits.
struct Identifiers {
    std::string_view first;
    std::string_view last;
    std::size_t size;  // of the identifier
    std::size_t value; // of its value, 0 for any
};

constexpr Identifiers kIdentifiers[] = {
    {"00", "00", 2, 18}, {"01", "03", 2, 14}, {"04", "04", 2, 16}, {"10", "10", 2, 0},
    {"11", "19", 2, 6},  {"20", "20", 2, 2},  {"21", "22", 2, 0},  {"23", "25", 3, 0},
    {"30", "30", 2, 0},  {"31", "36", 4, 6},  {"37", "37", 2, 0},  {"39", "39", 4, 0},
    {"40", "40", 3, 0},  {"41", "41", 3, 13}, {"42", "42", 3, 0},  {"43", "43", 4, 0},
    {"70", "70", 4, 0},  {"71", "71", 3, 0},  {"72", "72", 4, 0},  {"80", "82", 4, 0},
    {"90", "99", 2, 0},
};

bool isDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Null if the text begins with no identifier.
const Identifiers* identifierOf(std::string_view text) {
    const std::string_view two = text.substr(0, 2);
    for (const Identifiers& known : kIdentifiers) {
        if (two >= known.first && two <= known.last) {
            const std::string_view whole = text.substr(0, known.size);
            return whole.size() == known.size && isDigits(whole) ? &known : nullptr;
        }
    }
    return nullptr;
}

// Where the value ends that text begins with, npos if it is none.
std::size_t endOfValue(std::string_view text, const Identifiers& known, std::size_t variableEnd) {
    const std::size_t end = known.value != 0 ? known.value : variableEnd;
    const bool sound =
        end > 0 && end <= text.size() && (known.value == 0 || isDigits(text.substr(0, end)));
    return sound ? end : std::string_view::npos;
}

// Where in the readable form the next identifier's parenthesis is.
std::size_t nextParenthesis(std::string_view text) {
    for (std::size_t at = text.find('('); at != std::string_view::npos;
         at = text.find('(', at + 1)) {
        const Identifiers* known = identifierOf(text.substr(at + 1));
        if (known != nullptr && text.substr(at + 1 + known->size).starts_with(')')) {
            return at;
        }
    }
    return text.size();
}

} // namespace

bool isElementString(std::string_view text) {
    if (text.empty()) {
        return false;
    }
    while (!text.empty()) {
        const Identifiers* known = identifierOf(text);
        if (known == nullptr) {
            return false;
        }
        text.remove_prefix(known->size);
        const std::size_t end =
            endOfValue(text, *known, std::min(text.find(kSeparator), text.size()));
        if (end == std::string_view::npos) {
            return false;
        }
        text.remove_prefix(end);
        if (text.starts_with(kSeparator)) {
            text.remove_prefix(1);
            if (text.empty()) {
                return false;
            }
        }
    }
    return true;
}

std::optional<std::string> elementStringOf(std::string_view readable) {
    std::string elements;
    while (readable.starts_with('(')) {
        readable.remove_prefix(1);
        const Identifiers* known = identifierOf(readable);
        if (known == nullptr || !readable.substr(known->size).starts_with(')')) {
            return std::nullopt;
        }
        elements += readable.substr(0, known->size);
        readable.remove_prefix(known->size + 1);
        const std::size_t end = endOfValue(readable, *known, nextParenthesis(readable));
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        elements += readable.substr(0, end);
        readable.remove_prefix(end);
        if (known->value == 0 && !readable.empty()) {
            elements += kSeparator;
        }
    }
    return readable.empty() && !elements.empty() ? std::optional(elements) : std::nullopt;
}

} // namespace doccam::codes

// Symbologies of codes, and sets of them.
#pragma once

#include <cstdint>

namespace doccam::codes {

// Single bits, as in the public header.
enum class Symbology : std::uint32_t {
    kEan13 = 1U << 0,
    kEan8 = 1U << 1,
    kUpcA = 1U << 2,
    kUpcE = 1U << 3,
    kDataBar = 1U << 4,
    kDataBarExpanded = 1U << 5,
    kCode128 = 1U << 6,
    kCode93 = 1U << 7,
    kCode39 = 1U << 8,
    kCodabar = 1U << 9,
    kItf = 1U << 10,
    kQr = 1U << 11,
    kMicroQr = 1U << 12,
    kDataMatrix = 1U << 13,
    kAztec = 1U << 14,
    kPdf417 = 1U << 15,
    kMaxiCode = 1U << 16
};

using SymbologySet = std::uint32_t;

constexpr SymbologySet kEveryRetail = 0xf; // codes of goods, which may have an add-on beside them
constexpr SymbologySet kEveryLinear = 0x7ff;
constexpr SymbologySet kEveryMatrix = 0x1f800;
constexpr SymbologySet kEverySymbology = kEveryLinear | kEveryMatrix;

constexpr SymbologySet asSet(Symbology symbology) {
    return static_cast<SymbologySet>(symbology);
}

constexpr bool contains(SymbologySet set, Symbology symbology) {
    return (set & asSet(symbology)) != 0;
}

constexpr bool isLinear(Symbology symbology) {
    return contains(kEveryLinear, symbology);
}

constexpr bool isRetail(Symbology symbology) {
    return contains(kEveryRetail, symbology);
}

// Whether a code may be read in part without its reader noticing: no check digit is required.
constexpr bool isUnchecked(Symbology symbology) {
    return symbology == Symbology::kItf || symbology == Symbology::kCodabar ||
           symbology == Symbology::kCode39;
}

// Null if it is no single symbology.
const char* nameOf(Symbology symbology);

} // namespace doccam::codes

#include "codes/symbology.h"

#include <array>
#include <bit>
#include <cstddef>

namespace doccam::codes {

const char* nameOf(Symbology symbology) {
    // In the order of the bits.
    static constexpr std::array kNames = {
        "EAN-13",        "EAN-8",       "UPC-A",   "UPC-E",   "DataBar", "DataBar Expanded",
        "Code 128",      "Code 93",     "Code 39", "Codabar", "ITF",     "QR Code",
        "Micro QR Code", "Data Matrix", "Aztec",   "PDF417",  "MaxiCode"};
    const SymbologySet bit = asSet(symbology);
    const auto place = static_cast<std::size_t>(std::countr_zero(bit));
    return std::has_single_bit(bit) && place < kNames.size() ? kNames[place] : nullptr;
}

} // namespace doccam::codes

#include "decode/jpeg_header.h"

#include <cstddef>

namespace doccam {
namespace {

constexpr unsigned char kFirstMarker = 0xC0;
constexpr unsigned char kLastMarker = 0xFE;
constexpr unsigned char kLosslessFrame = 0xF7;

bool startsFrame(unsigned char marker) {
    return (marker >= 0xC0 && marker <= 0xC3) || marker == kLosslessFrame;
}

// Restart, start and end markers have nothing behind them.
bool standsAlone(unsigned char marker) {
    return marker >= 0xD0 && marker <= 0xD9;
}

// What is missing behind the end counts as zero, as it does for decoders with padded data.
int bigEndian(std::span<const unsigned char> bytes, std::size_t at) {
    const auto byte = [bytes](std::size_t i) { return i < bytes.size() ? int{bytes[i]} : 0; };
    return byte(at) << 8 | byte(at + 1);
}

} // namespace

std::optional<cv::Size> announcedSize(std::span<const unsigned char> data) {
    std::size_t at = 0;
    while (at + 1 < data.size()) {
        const unsigned char marker = data[at + 1];
        // Bytes between segments are passed over, as decoders do.
        if (data[at] != 0xFF || marker < kFirstMarker || marker > kLastMarker) {
            ++at;
            continue;
        }
        at += 2;
        if (startsFrame(marker)) {
            return cv::Size(bigEndian(data, at + 5), bigEndian(data, at + 3));
        }
        at += standsAlone(marker) ? 0 : static_cast<std::size_t>(bigEndian(data, at));
    }
    return std::nullopt;
}

} // namespace doccam

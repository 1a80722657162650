#include "decode/jpeg_header.h"

#include <cstddef>

namespace doccam {
namespace {

constexpr unsigned char kFirstMarker = 0xC0;
constexpr unsigned char kLastMarker = 0xFE;
constexpr unsigned char kLosslessFrame = 0xF7;
constexpr unsigned char kEndOfPicture = 0xD9;

bool startsFrame(unsigned char marker) {
    return (marker >= 0xC0 && marker <= 0xC3) || marker == kLosslessFrame;
}

// Segments that decoders pass over as a whole: tables, scans, application data and comments. Behind
// any other marker they look for the next one at once.
bool hasLength(unsigned char marker) {
    return marker == 0xC4 || marker == 0xDA || marker == 0xDB || marker == 0xDD ||
           (marker >= 0xE0 && marker <= 0xEF) || marker == 0xF8 || marker == 0xFE;
}

// What is missing behind the end counts as zero, as it does for decoders with padded data.
int bigEndian(std::span<const unsigned char> bytes, std::size_t at) {
    const auto byte = [bytes](std::size_t i) { return i < bytes.size() ? int{bytes[i]} : 0; };
    return byte(at) << 8 | byte(at + 1);
}

} // namespace

std::vector<cv::Size> announcedSizes(std::span<const unsigned char> data) {
    std::vector<cv::Size> sizes;
    std::size_t at = 0;
    while (at + 1 < data.size()) {
        const unsigned char marker = data[at + 1];
        // Bytes between segments are passed over, as decoders do.
        if (data[at] != 0xFF || marker < kFirstMarker || marker > kLastMarker) {
            ++at;
            continue;
        }
        at += 2;
        if (marker == kEndOfPicture && !sizes.empty()) {
            break;
        }
        if (startsFrame(marker)) {
            sizes.emplace_back(bigEndian(data, at + 5), bigEndian(data, at + 3));
        }
        at += hasLength(marker) ? static_cast<std::size_t>(bigEndian(data, at)) : 0;
    }
    return sizes;
}

} // namespace doccam

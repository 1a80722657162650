#include "device/damage.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace doccam::virtualcam {

namespace {

using Bytes = std::vector<std::uint8_t>;

// Scrambles all but the first marker, so that a decoder finds no usable header.
Bytes corrupted(Bytes bytes) {
    for (std::size_t i = 2; i < bytes.size(); ++i) {
        bytes[i] ^= 0x5A;
    }
    return bytes;
}

Bytes truncated(Bytes bytes) {
    bytes.resize(bytes.size() / 2);
    return bytes;
}

// A JPEG whose header announces a progressive square of that side; its data stay as they are.
Bytes announcing(Bytes bytes, int side) {
    constexpr std::array<std::uint8_t, 2> kFrameHeader{0xFF, 0xC0};
    const auto header =
        std::search(bytes.begin(), bytes.end(), kFrameHeader.begin(), kFrameHeader.end());
    constexpr std::ptrdiff_t kSidesEnd = 9; // after marker, length and depth
    if (bytes.end() - header >= kSidesEnd) {
        header[1] = 0xC2;
        for (const int place : {5, 7}) {
            header[place] = static_cast<std::uint8_t>(side >> 8);
            header[place + 1] = static_cast<std::uint8_t>(side & 0xFF);
        }
    }
    return bytes;
}

} // namespace

FrameBytes makeFrame(FrameSource& source, const PictureFormat& format, std::uint32_t number,
                     const std::vector<Fault>& faults) {
    FrameBytes frame = source.frame(format.pixelFormat, format.size, number);
    for (const Fault& fault : faults) {
        switch (fault.kind) {
        case FaultKind::kCorrupt:
            frame = std::make_shared<const Bytes>(corrupted(*frame));
            break;
        case FaultKind::kTruncated:
            frame = std::make_shared<const Bytes>(truncated(*frame));
            break;
        case FaultKind::kEmpty:
            frame = std::make_shared<const Bytes>();
            break;
        case FaultKind::kWrongSize:
            frame =
                fault.value > 0
                    ? std::make_shared<const Bytes>(announcing(*frame, fault.value))
                    : source.frame(format.pixelFormat,
                                   {format.size.width / 4 * 2, format.size.height / 4 * 2}, number);
            break;
        default:
            break;
        }
    }
    return frame;
}

} // namespace doccam::virtualcam

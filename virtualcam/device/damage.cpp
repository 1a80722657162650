#include "device/damage.h"

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
            frame = source.frame(format.pixelFormat,
                                 {format.size.width / 4 * 2, format.size.height / 4 * 2}, number);
            break;
        default:
            break;
        }
    }
    return frame;
}

} // namespace doccam::virtualcam

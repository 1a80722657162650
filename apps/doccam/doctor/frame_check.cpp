#include "doctor/frame_check.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <array>
#include <vector>

namespace doccam::host {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::array<std::uint8_t, 2> kStart{0xFF, 0xD8};
constexpr std::array<std::uint8_t, 2> kEnd{0xFF, 0xD9};

bool isReadable(Bytes frame) {
    const std::vector<std::uint8_t> bytes(frame.begin(), frame.end());
    try {
        return !cv::imdecode(bytes, cv::IMREAD_REDUCED_GRAYSCALE_8).empty();
    } catch (const cv::Exception&) {
        return false;
    }
}

FrameFlaw flawOfJpeg(Bytes frame) {
    const auto end = std::find_end(frame.begin(), frame.end(), kEnd.begin(), kEnd.end());
    const bool begins =
        frame.size() > kStart.size() && std::equal(kStart.begin(), kStart.end(), frame.begin());
    if (!begins || !isReadable(frame)) {
        return FrameFlaw::kNoJpeg;
    }
    return end == frame.end() ? FrameFlaw::kShort : FrameFlaw::kNone;
}

} // namespace

FrameFlaw flawOf(Bytes frame, Format format, Size size) {
    if (frame.empty()) {
        return FrameFlaw::kShort;
    }
    if (format == Format::kMjpeg) {
        return flawOfJpeg(frame);
    }
    constexpr long long kBytesPerPixel = 2;
    const auto length = static_cast<long long>(frame.size());
    return length < area(size) * kBytesPerPixel ? FrameFlaw::kShort : FrameFlaw::kNone;
}

} // namespace doccam::host

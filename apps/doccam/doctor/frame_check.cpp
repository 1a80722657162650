#include "doctor/frame_check.h"

#include "base/pictures/jpeg_file_reader.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>

namespace doccam::host {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::array<std::uint8_t, 2> kStart{0xFF, 0xD8};
constexpr std::array<std::uint8_t, 2> kEnd{0xFF, 0xD9};

// Decodes an eighth of its pixels.
bool isReadable(Bytes frame) try {
    constexpr int kReduction = 8;
    JpegFileReader reader(frame);
    PictureReader::Header header;
    if (!reader.readHeader(kReduction, header)) {
        return false;
    }
    cv::Mat picture(header.size, CV_8UC1);
    return reader.readPixels(picture);

} catch (const cv::Exception&) {

    return false;
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
    return length < size.area() * kBytesPerPixel ? FrameFlaw::kShort : FrameFlaw::kNone;
}

} // namespace doccam::host

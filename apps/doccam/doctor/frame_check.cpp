#include "doctor/frame_check.h"

#include "base/handles/standard_file.h"
#include "base/pictures/jpeg_file_reader.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace doccam::host {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::array<std::uint8_t, 2> kStart{0xFF, 0xD8};
constexpr std::array<std::uint8_t, 2> kEnd{0xFF, 0xD9};

// Decodes an eighth of its pixels.
bool isReadable(Bytes frame) {
    constexpr int kReduction = 8;
    const StandardFile file(fmemopen(const_cast<std::uint8_t*>(frame.data()), frame.size(), "r"));
    if (!file) {
        return false;
    }
    JpegFileReader reader(file.get());
    PictureReader::Header header;
    if (!reader.readHeader(kReduction, header)) {
        return false;
    }
    cv::Mat picture(header.size, CV_8UC1);
    return reader.readPixels(picture);
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

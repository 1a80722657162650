#include "device/formats.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

namespace doccam::virtualcam {

namespace {

const char* describe(std::uint32_t pixelFormat) {
    switch (pixelFormat) {
    case V4L2_PIX_FMT_MJPEG:
        return "Motion-JPEG";
    case V4L2_PIX_FMT_YUYV:
        return "YUYV 4:2:2";
    default:
        return "Other";
    }
}

// The area of the symmetric difference of two rectangles with a common corner.
long long mismatch(Size one, Size other) {
    const long long common = static_cast<long long>(std::min(one.width, other.width)) *
                             std::min(one.height, other.height);
    return static_cast<long long>(one.width) * one.height +
           static_cast<long long>(other.width) * other.height - 2 * common;
}

int onGrid(int wanted, int smallest, int largest, int step) {
    const int inside = std::clamp(wanted, smallest, largest);
    return smallest + (inside - smallest) / std::max(step, 1) * std::max(step, 1);
}

Size nearestSize(const FormatDescription& format, Size wanted) {
    if (format.range) {
        const SizeRange& range = *format.range;
        return {
            onGrid(wanted.width, range.smallest.width, range.largest.width, range.step.width),
            onGrid(wanted.height, range.smallest.height, range.largest.height, range.step.height)};
    }
    return *std::min_element(format.sizes.begin(), format.sizes.end(), [&](Size a, Size b) {
        return mismatch(a, wanted) < mismatch(b, wanted);
    });
}

bool offers(const FormatDescription& format, Size size) {
    return nearestSize(format, size) == size;
}

std::uint32_t unsignedOf(int value) {
    return static_cast<std::uint32_t>(value);
}

Size sizeOf(std::uint32_t width, std::uint32_t height) {
    constexpr std::uint32_t kLargest = std::numeric_limits<int>::max() / 2;
    return {static_cast<int>(std::min(width, kLargest)),
            static_cast<int>(std::min(height, kLargest))};
}

v4l2_frmsize_stepwise stepwise(const SizeRange& range) {
    return {unsignedOf(range.smallest.width), unsignedOf(range.largest.width),
            unsignedOf(range.step.width),     unsignedOf(range.smallest.height),
            unsignedOf(range.largest.height), unsignedOf(range.step.height)};
}

} // namespace

FormatOffer::FormatOffer(std::vector<FormatDescription> formats)
  : formats_(std::move(formats)) {}

const FormatDescription* FormatOffer::find(std::uint32_t pixelFormat) const {
    const auto found =
        std::find_if(formats_.begin(), formats_.end(), [&](const FormatDescription& format) {
            return format.pixelFormat == pixelFormat;
        });
    return found == formats_.end() ? nullptr : &*found;
}

int FormatOffer::describeFormat(v4l2_fmtdesc& entry) const {
    if (entry.type != V4L2_BUF_TYPE_VIDEO_CAPTURE || entry.index >= formats_.size()) {
        return EINVAL;
    }
    const std::uint32_t index = entry.index;
    entry = {};
    entry.index = index;
    entry.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    entry.pixelformat = formats_[index].pixelFormat;
    entry.flags = entry.pixelformat == V4L2_PIX_FMT_MJPEG ? V4L2_FMT_FLAG_COMPRESSED : 0;
    std::strncpy(reinterpret_cast<char*>(entry.description), describe(entry.pixelformat),
                 sizeof entry.description - 1);
    return 0;
}

int FormatOffer::describeSize(v4l2_frmsizeenum& entry) const {
    const FormatDescription* format = find(entry.pixel_format);
    if (format == nullptr) {
        return EINVAL;
    }
    std::fill(std::begin(entry.reserved), std::end(entry.reserved), 0U);
    if (format->range) {
        entry.type = V4L2_FRMSIZE_TYPE_STEPWISE;
        entry.stepwise = stepwise(*format->range);
        return entry.index == 0 ? 0 : EINVAL;
    }
    if (entry.index >= format->sizes.size()) {
        return EINVAL;
    }
    const Size size = format->sizes[entry.index];
    entry.type = V4L2_FRMSIZE_TYPE_DISCRETE;
    entry.discrete = {unsignedOf(size.width), unsignedOf(size.height)};
    return 0;
}

int FormatOffer::describeInterval(v4l2_frmivalenum& entry) const {
    const FormatDescription* format = find(entry.pixel_format);
    if (format == nullptr || !offers(*format, sizeOf(entry.width, entry.height)) ||
        entry.index >= format->frameRates.size()) {
        return EINVAL;
    }
    std::fill(std::begin(entry.reserved), std::end(entry.reserved), 0U);
    entry.type = V4L2_FRMIVAL_TYPE_DISCRETE;
    entry.discrete = {1, unsignedOf(format->frameRates[entry.index])};
    return 0;
}

PictureFormat FormatOffer::nearest(std::uint32_t pixelFormat, Size wanted) const {
    const FormatDescription* format = find(pixelFormat);
    if (format == nullptr) {
        format = &formats_.front();
    }
    PictureFormat result;
    result.pixelFormat = format->pixelFormat;
    result.size = nearestSize(*format, wanted);
    result.bytesPerLine =
        format->pixelFormat == V4L2_PIX_FMT_MJPEG ? 0 : unsignedOf(result.size.width) * 2;
    result.bufferBytes = unsignedOf(result.size.width) * unsignedOf(result.size.height) * 2;
    return result;
}

int FormatOffer::nearestRate(std::uint32_t pixelFormat, v4l2_fract interval) const {
    const FormatDescription* found = find(pixelFormat);
    const FormatDescription& format = found == nullptr ? formats_.front() : *found;
    if (interval.numerator == 0 || interval.denominator == 0) {
        return format.frameRates.front();
    }
    const double wanted = static_cast<double>(interval.numerator) / interval.denominator;
    return *std::min_element(format.frameRates.begin(), format.frameRates.end(), [&](int a, int b) {
        return std::abs(1.0 / a - wanted) < std::abs(1.0 / b - wanted);
    });
}

v4l2_pix_format toPixFormat(const PictureFormat& format) {
    v4l2_pix_format pix{};
    pix.width = unsignedOf(format.size.width);
    pix.height = unsignedOf(format.size.height);
    pix.pixelformat = format.pixelFormat;
    pix.field = V4L2_FIELD_NONE;
    pix.bytesperline = format.bytesPerLine;
    pix.sizeimage = format.bufferBytes;
    pix.colorspace = V4L2_COLORSPACE_SRGB;
    return pix;
}

} // namespace doccam::virtualcam

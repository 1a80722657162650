#include "discovery/frame_sizes.h"

#include "base/frame_size.h"
#include "state/discovery.h"
#include "state/settings.h"

#include <linux/videodev2.h>
#include <sys/ioctl.h>

#include <cstdint>
#include <cstdio>

namespace doccam {
namespace {

// More entries than any driver lists; bounds the loop over a driver that never ends its list.
constexpr unsigned kMaximumEntries = 4096;

struct SizeList {
    std::vector<int>& widths;
    std::vector<int>& heights;
};

enum Format { kMjpeg, kYuyv, kOther }; // as in formatList

SizeList sizesIn(record::Discovery& discovery, Format format) {
    switch (format) {
    case kMjpeg:
        return {discovery.mjpegWidthList, discovery.mjpegHeightList};
    case kYuyv:
        return {discovery.yuvWidthList, discovery.yuvHeightList};
    default:
        return {discovery.otherfmtWidthList, discovery.otherfmtHeightList};
    }
}

SizeList selectedSizes(record::Discovery& discovery, const record::Settings& settings) {
    return sizesIn(discovery,
                   settings.CameraFormat.load(std::memory_order_relaxed) == 0 ? kMjpeg : kYuyv);
}

void clearLists(record::Discovery& discovery) {
    discovery.formatList.clear();
    for (const Format format : {kMjpeg, kYuyv, kOther}) {
        const SizeList sizes = sizesIn(discovery, format);
        sizes.widths.clear();
        sizes.heights.clear();
    }
}

// Records the format and returns its list of sizes.
SizeList addFormat(record::Discovery& discovery, std::uint32_t pixelFormat) {
    const Format format = pixelFormat == V4L2_PIX_FMT_MJPEG  ? kMjpeg
                          : pixelFormat == V4L2_PIX_FMT_YUYV ? kYuyv
                                                             : kOther;
    discovery.formatList.push_back(format);
    return sizesIn(discovery, format);
}

void addSizes(int descriptor, std::uint32_t pixelFormat, SizeList sizes) {
    for (unsigned index = 0; index < kMaximumEntries; ++index) {
        v4l2_frmsizeenum size{};
        size.index = index;
        size.pixel_format = pixelFormat;
        if (ioctl(descriptor, VIDIOC_ENUM_FRAMESIZES, &size) != 0) {
            return;
        }
        if (size.type != V4L2_FRMSIZE_TYPE_DISCRETE) {
            continue;
        }
        const int width = static_cast<int>(size.discrete.width);
        const int height = static_cast<int>(size.discrete.height);
        sizes.widths.push_back(width);
        sizes.heights.push_back(height);
        std::printf("width,height:%d,%d\n", width, height);
    }
}

void storeAt(const std::vector<int>& list, int index, int* value) {
    if (value != nullptr && index >= 0 && static_cast<std::size_t>(index) < list.size()) {
        *value = list[static_cast<std::size_t>(index)];
    }
}

} // namespace

void listSizes(int descriptor, record::Discovery& discovery) {
    v4l2_capability capability{};
    ioctl(descriptor, VIDIOC_QUERYCAP, &capability);
    clearLists(discovery);
    for (unsigned index = 0; index < kMaximumEntries; ++index) {
        v4l2_fmtdesc format{};
        format.index = index;
        format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        if (ioctl(descriptor, VIDIOC_ENUM_FMT, &format) != 0) {
            return;
        }
        addSizes(descriptor, format.pixelformat, addFormat(discovery, format.pixelformat));
    }
}

// A camera whose largest size is the full one also offers enlarged stills.
void appendEnlargedSize(record::Discovery& discovery, const record::Settings& settings) {
    const SizeList sizes = selectedSizes(discovery, settings);
    int width = 0;
    int height = 0;
    for (std::size_t i = 0; i < sizes.heights.size(); ++i) {
        if (sizes.heights[i] > height) {
            height = sizes.heights[i];
            width = sizes.widths[i];
        }
    }
    if (static_cast<std::int64_t>(width) * height == kFullSize.area()) {
        sizes.widths.push_back(kEnlargedSize.width);
        sizes.heights.push_back(kEnlargedSize.height);
    }
}

bool hasSizes(const record::Discovery& discovery) {
    return !discovery.mjpegWidthList.empty() || !discovery.yuvWidthList.empty();
}

int selectedSizeCount(record::Discovery& discovery, const record::Settings& settings) {
    return static_cast<int>(selectedSizes(discovery, settings).widths.size());
}

int sizeAt(record::Discovery& discovery, const record::Settings& settings, int index, int* width,
           int* height) {
    if (!hasSizes(discovery)) {
        return -2;
    }
    const SizeList sizes = selectedSizes(discovery, settings);
    if (sizes.widths.empty()) {
        return -1;
    }
    storeAt(sizes.widths, index, width);
    storeAt(sizes.heights, index, height);
    return 0;
}

} // namespace doccam

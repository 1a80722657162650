#include "discovery/frame_sizes.h"

#include "base/device_node.h"
#include "base/frame_size.h"
#include "capture/session_end.h"
#include "discovery/device_enumeration.h"
#include "state/library_state.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

namespace doccam {
namespace {

// More entries than any driver lists; ends the loop over one that never says stop.
constexpr unsigned kMostEntries = 4096;

struct SizeList {
    std::vector<int>& widths;
    std::vector<int>& heights;
};

SizeList selectedSizes() {
    LibraryState& library = state();
    if (library.settings.CameraFormat.load(std::memory_order_relaxed) != 0) {
        return {library.discovery.yuvWidthList, library.discovery.yuvHeightList};
    }
    return {library.discovery.mjpegWidthList, library.discovery.mjpegHeightList};
}

void clearLists() {
    LibraryState& library = state();
    for (auto* list : {&library.discovery.formatList, &library.discovery.yuvWidthList,
                       &library.discovery.yuvHeightList, &library.discovery.mjpegWidthList,
                       &library.discovery.mjpegHeightList, &library.discovery.otherfmtWidthList,
                       &library.discovery.otherfmtHeightList}) {
        list->clear();
    }
}

// Notes the format and returns where its sizes belong.
SizeList noteFormat(std::uint32_t pixelFormat) {
    LibraryState& library = state();
    switch (pixelFormat) {
    case V4L2_PIX_FMT_MJPEG:
        library.discovery.formatList.push_back(0);
        return {library.discovery.mjpegWidthList, library.discovery.mjpegHeightList};
    case V4L2_PIX_FMT_YUYV:
        library.discovery.formatList.push_back(1);
        return {library.discovery.yuvWidthList, library.discovery.yuvHeightList};
    default:
        library.discovery.formatList.push_back(2);
        return {library.discovery.otherfmtWidthList, library.discovery.otherfmtHeightList};
    }
}

void listSizes(int descriptor, std::uint32_t pixelFormat, SizeList sizes) {
    for (unsigned index = 0; index < kMostEntries; ++index) {
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

void listFormats(int descriptor) {
    for (unsigned index = 0; index < kMostEntries; ++index) {
        v4l2_fmtdesc format{};
        format.index = index;
        format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        if (ioctl(descriptor, VIDIOC_ENUM_FMT, &format) != 0) {
            return;
        }
        listSizes(descriptor, format.pixelformat, noteFormat(format.pixelformat));
    }
}

// The camera of the largest model also delivers the enlarged size, as a still.
void appendEnlargedSize(SizeList sizes) {
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

void leaveOpenNode() {
    LibraryState& library = state();
    if (library.session.cam_fd == kNoDescriptor) {
        return;
    }
    if (library.session.bKeep) {
        closeSession();
        std::puts("---------getResolutionCount closeCamera BB---------");
    } else {
        close(library.session.cam_fd);
        std::puts("---------getResolutionCount closeCamera AA---------");
    }
}

void storeAt(const std::vector<int>& list, int index, int* value) {
    if (value != nullptr && index >= 0 && static_cast<std::size_t>(index) < list.size()) {
        *value = list[static_cast<std::size_t>(index)];
    }
}

} // namespace

int enumerateSizes(int index) {
    LibraryState& library = state();
    if (!cameraExists(index)) {
        return 0;
    }
    leaveOpenNode();
    library.session.cam_fd =
        openDeviceNode(library.discovery.devices[static_cast<std::size_t>(index)].c_str());
    if (library.session.cam_fd == kNoDescriptor) {
        std::puts("open camera error!!");
        return 0;
    }
    v4l2_capability capability{};
    ioctl(library.session.cam_fd, VIDIOC_QUERYCAP, &capability);
    clearLists();
    listFormats(library.session.cam_fd);
    close(library.session.cam_fd);
    library.session.cam_fd = kNoDescriptor;
    library.session.isInsert1000M = false;

    const SizeList sizes = selectedSizes();
    if (sizes.widths.empty()) {
        return 0;
    }
    appendEnlargedSize(sizes);
    return static_cast<int>(sizes.widths.size());
}

bool hasSizes() {
    return !state().discovery.mjpegWidthList.empty() || !state().discovery.yuvWidthList.empty();
}

int selectedSizeCount() {
    return static_cast<int>(selectedSizes().widths.size());
}

int sizeAt(int index, int* width, int* height) {
    if (!hasSizes()) {
        return -2;
    }
    const SizeList sizes = selectedSizes();
    if (sizes.widths.empty()) {
        return -1;
    }
    storeAt(sizes.widths, index, width);
    storeAt(sizes.heights, index, height);
    return 0;
}

} // namespace doccam

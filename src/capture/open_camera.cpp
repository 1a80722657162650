#include "capture/open_camera.h"

#include "base/slack_image.h"
#include "capture/driver_buffers.h"
#include "capture/format_negotiation.h"
#include "capture/request_failure.h"
#include "capture/session.h"
#include "decode/mjpeg_frames.h"
#include "discovery/device_enumeration.h"
#include "discovery/frame_sizes.h"
#include "state/library_state.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <limits>

namespace doccam {
namespace {

bool sizesKnown(LibraryState& library, int index) {
    if (!hasSizes(library.discovery)) {
        countSizes(library, index);
    }
    return hasSizes(library.discovery);
}

// A frame must have pixels, and its bytes must be countable in nSize.
bool isPossible(FrameSize size) {
    return size.width > 0 && size.height > 0 && size.area() <= std::numeric_limits<int>::max() / 3;
}

void chooseGrabSize(record::Session& session, FrameSize size) {
    const bool enlarged = size == kEnlargedSize;
    session.isInsert1000M = enlarged;
    setGrabSize(session, enlarged ? kFullSize : size);
}

int openNode(LibraryState& library, int index) {
    record::Session& session = library.session;
    session.cam_fd.reset(openDeviceNode(library.discovery, index));
    if (!session.cam_fd.isOpen()) {
        std::puts("打开相机节点失败");
        return -3;
    }
    session.sessionProcess = getpid();
    return 0;
}

// The requested size decides, whatever the driver settled on; images that exist keep theirs.
void allocateImages(const record::Session& session) {
    Frames& frames = *session.frames;
    if (frames.srcimage.empty()) {
        frames.srcimage = makeSlackImage(session.nHeight, session.nWidth);
    }
    if (frames.roimage.empty()) {
        // Black, since a turn in the middle of a frame shows it before it is filled.
        frames.roimage = cv::Mat::zeros(session.nWidth, session.nHeight, CV_8UC3);
    }
}

int switchStreamOn(const record::Session& session) {
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    if (ioctl(session.cam_fd.get(), VIDIOC_STREAMON, &type) != 0) {
        return requestFailed("ioctl(VIDIOC_STREAMON)", -13, "\n");
    }
    return 0;
}

int startStream(LibraryState& library, int index) {
    record::Session& session = library.session;
    if (const int code = openNode(library, index); code != 0) {
        return code;
    }
    printCamera(session.cam_fd.get());
    if (const int code = negotiateFormat(session, library.settings); code != 0) {
        return code;
    }
    if (const int code = mapDriverBuffers(session); code != 0) {
        return code;
    }
    allocateImages(session);
    return switchStreamOn(session);
}

// A failure while the buffers are being mapped leaves everything as it is.
bool keepsDecoder(int code) {
    return code == -10 || code == -11 || code == -12;
}

} // namespace

int openSession(LibraryState& library, int index, FrameSize size) try {
    if (!cameraExists(library.discovery, index)) {
        return -1;
    }
    if (!sizesKnown(library, index)) {
        return -2;
    }
    if (!isPossible(size)) {
        std::fprintf(stderr, "doccam: openCamera: no picture has %d x %d pixels\n", size.width,
                     size.height);
        return -2;
    }
    record::Session& session = library.session;
    createDecoder(session.pdecode);
    chooseGrabSize(session, size);
    if (releaseNode(library, "openCamera >")) {
        std::puts("---------openCamera closeCamera!---------");
    }
    endLostSession(library);
    if (const int code = startStream(library, index); code != 0) {
        if (!keepsDecoder(code)) {
            releaseDecoder(session.pdecode);
        }
        return code;
    }
    startStreaming(session);
    std::puts("ovisto->openCamera OK");
    return 0;

} catch (...) {

    releaseDecoder(library.session.pdecode);
    throw;
}

int countSizes(LibraryState& library, int index) {
    if (!cameraExists(library.discovery, index)) {
        return 0;
    }
    releaseNode(library, "getResolutionCount");
    UniqueFd& node = library.session.cam_fd;
    node.reset(openDeviceNode(library.discovery, index));
    if (!node.isOpen()) {
        std::puts("open camera error!!");
        return 0;
    }
    listSizes(node.get(), library.discovery);
    node.reset();
    library.session.isInsert1000M = false;
    appendEnlargedSize(library.discovery, library.settings);
    return selectedSizeCount(library.discovery, library.settings);
}

} // namespace doccam

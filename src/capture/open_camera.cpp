#include "capture/open_camera.h"

#include "base/device_node.h"
#include "base/frame_size.h"
#include "base/slack_image.h"
#include "capture/driver_buffers.h"
#include "capture/format_negotiation.h"
#include "capture/frame_loop.h"
#include "capture/grab_size.h"
#include "capture/request_failure.h"
#include "capture/session_end.h"
#include "decode/mjpeg_frames.h"
#include "discovery/device_enumeration.h"
#include "discovery/frame_sizes.h"
#include "state/library_state.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <limits>

namespace doccam {
namespace {

bool sizesKnown(int index) {
    if (!hasSizes()) {
        enumerateSizes(index);
    }
    return hasSizes();
}

// A frame must have pixels, and its bytes must be countable in nSize.
bool isPossible(FrameSize size) {
    return size.width > 0 && size.height > 0 && size.area() <= std::numeric_limits<int>::max() / 3;
}

void chooseGrabSize(FrameSize size) {
    const bool enlarged = size == kEnlargedSize;
    state().session.isInsert1000M = enlarged;
    setGrabSize(state().session, enlarged ? kFullSize : size);
}

void leaveOpenNode() {
    LibraryState& library = state();
    if (library.session.cam_fd == kNoDescriptor) {
        return;
    }
    if (library.session.bKeep) {
        closeSession();
        std::puts("---------openCamera > closeCamera BB---------");
    } else {
        close(library.session.cam_fd);
        std::puts("---------openCamera > closeCamera AA---------");
    }
    std::puts("---------openCamera closeCamera!---------");
}

// A callback of the thread that was given up may still read them; the next session takes others.
void leavePixelsBehind() {
    LibraryState& library = state();
    for (cv::Mat* image :
         {&library.session.srcimage, &library.session.roimage, &library.session.zoomimage}) {
        image->release();
    }
    library.view.WEB_BUF = nullptr;
    library.view.previewPixels.reset();
}

// What an earlier session could not release: its thread and its mappings outlive a descriptor that
// getCameraName took away, its mappings a failed open. They would keep the camera busy.
void endEarlierSession() {
    const EndingClaim claim(EndingClaim::IfTaken::kWait);
    if (retireStreamingThread() == ThreadEnd::kGivenUp) {
        leavePixelsBehind();
    }
    unmapLostBuffers();
}

int openNode(int index) {
    LibraryState& library = state();
    library.session.cam_fd =
        openDeviceNode(library.discovery.devices[static_cast<std::size_t>(index)].c_str());
    if (library.session.cam_fd == kNoDescriptor) {
        std::puts("打开相机节点失败");
        return -3;
    }
    library.session.sessionProcess = getpid();
    return 0;
}

// The size asked for decides, whatever the driver settled on; images that are there keep theirs.
void allocateImages() {
    LibraryState& library = state();
    if (library.session.srcimage.empty()) {
        library.session.srcimage = makeSlackImage(library.session.nHeight, library.session.nWidth);
    }
    if (library.session.roimage.empty()) {
        // Black, not whatever lay there: a turn in the middle of a frame shows it before it is
        // filled.
        library.session.roimage =
            cv::Mat::zeros(library.session.nWidth, library.session.nHeight, CV_8UC3);
    }
}

int switchStreamOn() {
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    if (ioctl(state().session.cam_fd, VIDIOC_STREAMON, &type) != 0) {
        return requestFailed("ioctl(VIDIOC_STREAMON) failed %d(%s)\n", -13);
    }
    return 0;
}

void startThread() {
    LibraryState& library = state();
    const auto thread = std::make_shared<StreamingThread>();
    library.session.streamingThread = thread;
    library.session.bKeep = true;
    if (!thread->start(streamFrames)) {
        std::puts("create thread error");
    }
}

int startStream(int index) {
    if (const int code = openNode(index); code != 0) {
        return code;
    }
    printCamera();
    if (const int code = negotiateFormat(); code != 0) {
        return code;
    }
    if (const int code = mapDriverBuffers(); code != 0) {
        return code;
    }
    allocateImages();
    return switchStreamOn();
}

// A failure while the buffers are being mapped leaves everything as it stands.
bool keepsDecoder(int code) {
    return code == -10 || code == -11 || code == -12;
}

} // namespace

int openSession(int index, FrameSize size) {
    if (!cameraExists(index)) {
        return -1;
    }
    if (!sizesKnown(index)) {
        return -2;
    }
    if (!isPossible(size)) {
        std::fprintf(stderr, "doccam: openCamera: no picture has %d x %d pixels\n", size.width,
                     size.height);
        return -2;
    }
    createDecoder();
    chooseGrabSize(size);
    leaveOpenNode();
    endEarlierSession();
    if (const int code = startStream(index); code != 0) {
        if (!keepsDecoder(code)) {
            releaseDecoder();
        }
        return code;
    }
    startThread();
    std::puts("ovisto->openCamera OK");
    return 0;
}

} // namespace doccam

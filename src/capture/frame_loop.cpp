#include "capture/frame_loop.h"

#include "barcode/decoding_cascade.h"
#include "base/frame_size.h"
#include "base/pause.h"
#include "decode/yuyv_to_rgb.h"
#include "docimage/sheet/edge_overlay.h"
#include "docimage/turn/quarter_turn.h"
#include "output/still/still.h"
#include "preview/picture.h"
#include "state/library_state.h"

#include <cstdio>
#include <cstring>

namespace doccam {
namespace {

thread_local std::span<const unsigned char> handed;

struct Handed {
    explicit Handed(std::span<const unsigned char> bytes) { handed = bytes; }

    ~Handed() { handed = {}; }

    Handed(const Handed&) = delete;
    Handed& operator=(const Handed&) = delete;
};

} // namespace

FrameLoop::FrameLoop(StreamingThread& thread, LibraryState& library)
  : thread_(thread)
  , frames_(thread.frames())
  , library_(library)
  , intake_(thread, library.session) {}

void FrameLoop::run() {
    containing(DOCCAM_FAULT_STREAM_ENDED, [this] {
        while (library_.session.bKeep && !thread_.stopRequested() && step()) {
        }
    });
    if (!thread_.abandoned()) {
        reportFaults();
    }
}

bool FrameLoop::step() {
    bool usable = false;
    if (!grab() || !prepareFrame(usable)) {
        return false;
    }
    if (!usable) {
        return reportFaults();
    }
    if (!takeStill() || !readCode()) {
        return false;
    }
    drawOutline();
    if (!deliverFrame() || !deliverPreview() || !reportFaults()) {
        return false;
    }
    constexpr int kFramePause = 3;
    pauseFor(kFramePause);
    return true;
}

bool FrameLoop::grab() {
    if (!intake_.take()) {
        return false;
    }
    const int result = logGrabFailure(intake_.grabbed());
    if (result == 0) {
        return true;
    }
    std::puts("grabImage error!!!!!!!!!!");
    std::printf("cam get image ret = %d\n", result);
    if (endsUnexpectedly()) {
        reportFault(endOfStream(result, library_.session.cam_fd.get()));
    }
    return false;
}

bool FrameLoop::decode() {
    cv::Mat& image = frames_.srcimage;
    if (isMjpeg()) {
        return intake_.decodeInto(image);
    }
    if (std::strstr(library_.session.pix_format, "YUYV") != nullptr) {
        convertYuyv(intake_.bytes(), image.data, image.cols, image.rows);
        return true;
    }
    std::puts("don't suport format");
    if (endsUnexpectedly()) {
        reportFault({DOCCAM_FAULT_STREAM_ENDED, DOCCAM_CAUSE_PIXEL_FORMAT,
                     "the pixel format is neither MJPEG nor YUYV"});
    }
    return false;
}

bool FrameLoop::prepareFrame(bool& usable) {
    bool goesOn = true;
    containing(DOCCAM_FAULT_FRAME, [&] {
        goesOn = decode();
        if (goesOn && !dropAfterTurn()) {
            rotate();
            usable = true;
        }
    });
    return goesOn;
}

bool FrameLoop::isMjpeg() const {
    return std::strstr(library_.session.pix_format, "MJPG") != nullptr;
}

// The first frames after a turn would be shown with the geometry of the old orientation.
bool FrameLoop::dropAfterTurn() {
    int left = library_.settings.RotateFlag;
    while (left > 0) {
        if (library_.settings.RotateFlag.compare_exchange_weak(left, left - 1)) {
            std::puts("RotateFlag--");
            return true;
        }
    }
    return false;
}

void FrameLoop::rotate() {
    const int turns = library_.settings.RotateAngle.load(std::memory_order_relaxed);
    if (turns == 2) {
        turnByHalf(frames_.srcimage);
    } else if (sidesSwapped(turns)) {
        const Quarter quarter = turns == 1 ? Quarter::kClockwise : Quarter::kCounterClockwise;
        turnIntoFrame(frames_.srcimage, quarter, frames_.roimage);
    }
}

const cv::Mat* FrameLoop::workingImage() const {
    const int turns = library_.settings.RotateAngle.load(std::memory_order_relaxed);
    if (turns < 0 || turns > 3) {
        return nullptr;
    }
    return sidesSwapped(turns) ? &frames_.roimage : &frames_.srcimage;
}

bool FrameLoop::endsUnexpectedly() const {
    return hasFaultCallback() && library_.session.bKeep && !thread_.stopRequested();
}

bool FrameLoop::reportFaults() {
    return faults_.empty() || thread_.outside([this] { faults_.report(); });
}

template <typename ClearFlag>
bool FrameLoop::completeRequest(ClearFlag&& clearFlag) {
    library_.session.reportingFaults.store(!faults_.empty(), std::memory_order_release);
    clearFlag();
    if (!reportFaults()) {
        return false;
    }
    library_.session.reportingFaults.store(false, std::memory_order_release);
    return true;
}

bool FrameLoop::takeStill() {
    if (!library_.session.isShootPhoto.load(std::memory_order_acquire)) {
        return true;
    }
    containing(DOCCAM_FAULT_STILL, [this] {
        if (const cv::Mat* image = workingImage()) {
            const int turns = library_.settings.RotateAngle.load(std::memory_order_relaxed);
            const Still still =
                prepareStill(library_.session.imgSavePath.load(), library_.settings.cutType, *image,
                             library_, liveSheet_.outlined(image->size(), turns));
            thread_.writing([&] { saveStill(still, library_.settings); });
        }
    });
    if (thread_.abandoned()) {
        return false;
    }
    return completeRequest(
        [this] { library_.session.isShootPhoto.store(false, std::memory_order_release); });
}

bool FrameLoop::readCode() {
    const int mode = library_.session.IsRecogBarQr.load(std::memory_order_acquire);
    if (mode == kNoCodeRequest) {
        return true;
    }
    const bool read = containing(DOCCAM_FAULT_CODE, [this, mode] {
        if (const cv::Mat* image = workingImage()) {
            library_.session.BarQrContent.publish(readCodeOnFrame(*image, codeKind(mode)));
            if (isMjpeg()) {
                std::printf("BarQrContent:%s\n", library_.session.BarQrContent.current());
            }
        }
    });
    if (!read) {
        library_.session.BarQrContent.publish({});
    }
    return completeRequest(
        [this] { library_.session.IsRecogBarQr.store(kNoCodeRequest, std::memory_order_release); });
}

// After the still, which must not show the outline, and for the next one, which needs the corners.
void FrameLoop::drawOutline() {
    const record::Settings& settings = library_.settings;
    const bool isWanted = settings.cutType.load(std::memory_order_relaxed) == kCropToSheet;
    const bool byEngine = settings.pageEngine.load(std::memory_order_relaxed) == kPageEngine;
    if (!isWanted || !byEngine) {
        liveSheet_.forget();
    }
    const cv::Mat* image = workingImage();
    if (!isWanted || image == nullptr) {
        return;
    }
    containing(DOCCAM_FAULT_OUTLINE, [&] {
        if (byEngine) {
            const int turns = settings.RotateAngle.load(std::memory_order_relaxed);
            liveSheet_.outline(*image, turns, library_.sheet);
        } else {
            outlineSheet(*image, true, library_.sheet);
        }
    });
}

bool FrameLoop::deliverFrame() {
    const FrameCallback callback =
        library_.settings.pGetVideoStream.load(std::memory_order_acquire);
    const cv::Mat* image = workingImage();
    if (callback == nullptr || image == nullptr) {
        return true;
    }
    const cv::Mat frame = *image;
    const auto filled = static_cast<std::size_t>(isMjpeg() ? intake_.grabbed().filled : 0);
    const Handed bytes({intake_.bytes(), filled});
    containing(DOCCAM_FAULT_FRAME,
               [&] { thread_.outside([&] { callback(frame.data, frame.cols, frame.rows); }); });
    return !thread_.abandoned();
}

bool FrameLoop::deliverPreview() {
    const WebFrameCallback callback =
        library_.settings.pGetVideoWebStream.load(std::memory_order_acquire);
    if (callback == nullptr) {
        return true;
    }
    const auto deliver = [&](const PreviewPicture& picture) {
        return thread_.outside([&] {
            callback(picture.pixels, picture.width, picture.height, picture.startX, picture.startY);
        });
    };
    containing(DOCCAM_FAULT_PREVIEW,
               [&] { showPreview(library_.view, frames_.zoomimage, workingImage(), deliver); });
    return !thread_.abandoned();
}

std::span<const unsigned char> FrameLoop::handedBytes() {
    return handed;
}

void streamFrames(StreamingThread& thread) {
    containing(DOCCAM_FAULT_STREAM_ENDED, [&] { FrameLoop(thread, state()).run(); });
}

} // namespace doccam

// Opening and closing a camera, and the thread that takes its frames.
#include "base/guarded.h"
#include "capture/frame_loop.h"
#include "capture/grab_frame.h"
#include "capture/open_camera.h"
#include "capture/session_end.h"
#include "decode/mjpeg_frames.h"

#include <doccam/doccam.hpp>

#include <memory>

namespace {

constexpr int kInternalError = -14;

} // namespace

int openCamera(int index, int width, int height) {
    const int code = doccam::guarded("openCamera", kInternalError, [=] {
        return doccam::openSession(index, {width, height});
    });
    if (code == kInternalError) {
        doccam::releaseDecoder();
    }
    return code;
}

int closeCamera() {
    return doccam::guarded("closeCamera", 0, [] {
        doccam::closeSession();
        return 0;
    });
}

int grabImage(unsigned char* buffer, int* length) {
    return doccam::grabFrame(buffer, length);
}

void* VideoStreamPro(void* /*arg*/) {
    std::make_shared<doccam::StreamingThread>()->run(doccam::streamFrames);
    return nullptr;
}

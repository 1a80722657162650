// Opening and closing a camera, and the thread that takes its frames.
#include "capture/session.h"

#include "base/guarded.h"
#include "capture/frame_loop.h"
#include "capture/grab_frame.h"
#include "capture/open_camera.h"
#include "decode/mjpeg_frames.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <memory>

namespace {

using doccam::state;
constexpr int kInternalError = -14;

} // namespace

int openCamera(int index, int width, int height) {
    const int code = doccam::guarded("openCamera", kInternalError, [=] {
        return doccam::openSession(state(), index, {width, height});
    });
    if (code == kInternalError) {
        doccam::releaseDecoder(state().session.pdecode);
    }
    return code;
}

int closeCamera() {
    return doccam::guarded("closeCamera", 0, [] {
        doccam::closeSession(state());
        return 0;
    });
}

int grabImage(unsigned char* buffer, int* length) {
    return doccam::grabFrame(state().session, buffer, length);
}

void* VideoStreamPro(void* /*arg*/) {
    std::make_shared<doccam::StreamingThread>(state().session.frames)->run(doccam::streamFrames);
    return nullptr;
}

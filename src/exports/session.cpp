// Opening and closing a camera, and the thread that takes its frames.
#include "capture/session.h"

#include "base/guarded.h"
#include "capture/frame_loop.h"
#include "capture/grab_frame.h"
#include "capture/open_camera.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>
#include <doccam/frame.h>

using doccam::guarded;
using doccam::state;

int openCamera(int index, int width, int height) {
    return guarded("openCamera", -14, [=] {
        return doccam::openSession(state(), index, {width, height});
    });
}

int closeCamera() {
    return guarded("closeCamera", 0, [] { return doccam::closeSession(state()), 0; });
}

int grabImage(unsigned char* buffer, int* length) {
    return doccam::grabFrame(state().session, buffer, length);
}

void* VideoStreamPro(void* /*arg*/) {
    doccam::streamOnThisThread(state().session);
    return nullptr;
}

const unsigned char* doccam_frame_bytes(size_t* length) {
    const auto bytes = doccam::FrameLoop::handedBytes();
    if (length != nullptr) {
        *length = bytes.size();
    }
    return bytes.empty() ? nullptr : bytes.data();
}

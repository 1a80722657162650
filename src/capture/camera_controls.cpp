#include "capture/camera_controls.h"

#include "base/pause.h"
#include "state/library_state.h"

#include <sys/ioctl.h>

#include <array>
#include <cstdio>

namespace doccam {
namespace {

constexpr int kUnknown = -10001;

constexpr std::array<std::uint32_t, 6> kControls{V4L2_CID_BRIGHTNESS, V4L2_CID_CONTRAST,
                                                 V4L2_CID_SATURATION, V4L2_CID_HUE,
                                                 V4L2_CID_GAIN,       V4L2_CID_GAMMA};
constexpr int kGamma = 5;

// Puts the selector's control into identifier; an unknown selector leaves the one used before.
void selectControl(int selector, std::uint32_t& identifier) {
    if (selector >= 0 && static_cast<std::size_t>(selector) < kControls.size()) {
        identifier = kControls[static_cast<std::size_t>(selector)];
    }
}

int request(unsigned long code, void* record) {
    return ioctl(state().session.cam_fd, code, record);
}

bool queryControl() {
    return request(VIDIOC_QUERYCTRL, &state().session.qctrl) == 0;
}

// Reads the queried control; says on standard error when it cannot.
bool readControl(const char* complaint) {
    LibraryState& library = state();
    library.session.ctrl.id = library.session.qctrl.id;
    if (request(VIDIOC_G_CTRL, &library.session.ctrl) < 0) {
        std::perror(complaint);
        return false;
    }
    return true;
}

bool writeControl(int value, const char* complaint) {
    LibraryState& library = state();
    library.session.ctrl.value = value;
    if (request(VIDIOC_S_CTRL, &library.session.ctrl) == -1) {
        std::puts(complaint);
        return false;
    }
    return true;
}

constexpr const char* kFocusUnread =
    "**********************get Focus params failed**************\n";

void store(int* output, int value) {
    if (output != nullptr) {
        *output = value;
    }
}

} // namespace

int controlRange(int selector, int* minimum, int* maximum, int* defaultValue, int* current) {
    LibraryState& library = state();
    if (!library.session.bKeep) {
        return -1;
    }
    selectControl(selector, library.session.qctrl.id);
    pauseFor(50);
    if (!queryControl()) {
        return -1;
    }
    if (!readControl("**********************get ctrl failed**************\n")) {
        return -2;
    }
    store(minimum, library.session.qctrl.minimum);
    store(maximum, library.session.qctrl.maximum);
    store(defaultValue, library.session.qctrl.default_value);
    store(current, library.session.ctrl.value);
    pauseFor(50);
    return 0;
}

int setControl(int selector, int value) {
    LibraryState& library = state();
    if (!library.session.bKeep) {
        return -1;
    }
    // Deliberate: gamma goes into the query record, and the value to the control used last.
    selectControl(selector,
                  selector == kGamma ? library.session.qctrl.id : library.session.ctrl.id);
    pauseFor(50);
    if (!writeControl(value, "set param error!")) {
        return -1;
    }
    pauseFor(20);
    return 0;
}

int resetControl(int selector) {
    LibraryState& library = state();
    if (!library.session.bKeep) {
        return kUnknown;
    }
    selectControl(selector, library.session.qctrl.id);
    pauseFor(50);
    int value = kUnknown;
    if (queryControl()) {
        if (!readControl("**********************get default param failed**************\n")) {
            return -10002;
        }
        value = library.session.qctrl.default_value;
    }
    pauseFor(50);
    if (!writeControl(value, "set default param error!")) {
        return -10003;
    }
    pauseFor(10);
    return value;
}

int toggleZoomFocus() {
    LibraryState& library = state();
    if (!library.session.bKeep) {
        return -1;
    }
    pauseFor(30);
    library.session.qctrl.id = V4L2_CID_ZOOM_ABSOLUTE;
    if (!queryControl()) {
        return 0;
    }
    if (!readControl(kFocusUnread)) {
        return -2;
    }
    pauseFor(25);
    return writeControl(library.session.ctrl.value != 0 ? 0 : 1, "set default param error!") ? 0
                                                                                             : -3;
}

int refocus() {
    LibraryState& library = state();
    if (!library.session.bKeep) {
        return -1;
    }
    pauseFor(30);
    library.session.qctrl.id = V4L2_CID_FOCUS_AUTO;
    if (!queryControl()) {
        return 0;
    }
    if (!readControl(kFocusUnread)) {
        return -2;
    }
    pauseFor(20);
    if (!writeControl(0, "set default param error 01!")) {
        return -3;
    }
    pauseFor(50);
    if (!writeControl(1, "set default param error 02!")) {
        return -4;
    }
    std::puts("ManualFocus");
    return 0;
}

} // namespace doccam

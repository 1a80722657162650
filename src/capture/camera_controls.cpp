#include "capture/camera_controls.h"

#include "base/pause.h"
#include "state/session.h"

#include <sys/ioctl.h>

#include <array>
#include <cstdio>
#include <optional>

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

int request(const record::Session& session, unsigned long code, void* record) {
    return ioctl(session.cam_fd.get(), code, record);
}

bool queryControl(record::Session& session) {
    return request(session, VIDIOC_QUERYCTRL, &session.qctrl) == 0;
}

// Reads the queried control; prints the complaint on standard error when it cannot.
bool readControl(record::Session& session, const char* complaint) {
    session.ctrl.id = session.qctrl.id;
    if (request(session, VIDIOC_G_CTRL, &session.ctrl) < 0) {
        std::perror(complaint);
        return false;
    }
    return true;
}

bool writeControl(record::Session& session, int value, const char* complaint) {
    session.ctrl.value = value;
    if (request(session, VIDIOC_S_CTRL, &session.ctrl) == -1) {
        std::puts(complaint);
        return false;
    }
    return true;
}

// Reads the control that makes the camera focus. The result if that is not possible, else none.
std::optional<int> failureToReadFocus(record::Session& session, std::uint32_t identifier) {
    if (!session.bKeep) {
        return -1;
    }
    pauseFor(30);
    session.qctrl.id = identifier;
    if (!queryControl(session)) {
        return 0;
    }
    if (!readControl(session, "**********************get Focus params failed**************\n")) {
        return -2;
    }
    return std::nullopt;
}

void store(int* output, int value) {
    if (output != nullptr) {
        *output = value;
    }
}

} // namespace

int controlRange(record::Session& session, int selector, int* minimum, int* maximum,
                 int* defaultValue, int* current) {
    if (!session.bKeep) {
        return -1;
    }
    selectControl(selector, session.qctrl.id);
    pauseFor(50);
    if (!queryControl(session)) {
        return -1;
    }
    if (!readControl(session, "**********************get ctrl failed**************\n")) {
        return -2;
    }
    store(minimum, session.qctrl.minimum);
    store(maximum, session.qctrl.maximum);
    store(defaultValue, session.qctrl.default_value);
    store(current, session.ctrl.value);
    pauseFor(50);
    return 0;
}

int setControl(record::Session& session, int selector, int value) {
    if (!session.bKeep) {
        return -1;
    }
    // Deliberate: gamma goes into the query record, and the value to the control used last.
    selectControl(selector, selector == kGamma ? session.qctrl.id : session.ctrl.id);
    pauseFor(50);
    if (!writeControl(session, value, "set param error!")) {
        return -1;
    }
    pauseFor(20);
    return 0;
}

int resetControl(record::Session& session, int selector) {
    if (!session.bKeep) {
        return kUnknown;
    }
    selectControl(selector, session.qctrl.id);
    pauseFor(50);
    int value = kUnknown;
    if (queryControl(session)) {
        if (!readControl(session,
                         "**********************get default param failed**************\n")) {
            return -10002;
        }
        value = session.qctrl.default_value;
    }
    pauseFor(50);
    if (!writeControl(session, value, "set default param error!")) {
        return -10003;
    }
    pauseFor(10);
    return value;
}

int toggleZoomFocus(record::Session& session) {
    if (const auto failure = failureToReadFocus(session, V4L2_CID_ZOOM_ABSOLUTE)) {
        return *failure;
    }
    pauseFor(25);
    const int opposite = session.ctrl.value != 0 ? 0 : 1;
    return writeControl(session, opposite, "set default param error!") ? 0 : -3;
}

int refocus(record::Session& session) {
    if (const auto failure = failureToReadFocus(session, V4L2_CID_FOCUS_AUTO)) {
        return *failure;
    }
    pauseFor(20);
    if (!writeControl(session, 0, "set default param error 01!")) {
        return -3;
    }
    pauseFor(50);
    if (!writeControl(session, 1, "set default param error 02!")) {
        return -4;
    }
    std::puts("ManualFocus");
    return 0;
}

} // namespace doccam

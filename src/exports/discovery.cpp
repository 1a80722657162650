// Finding cameras and their frame sizes.
#include "base/guarded.h"
#include "capture/open_camera.h"
#include "discovery/camera_name.h"
#include "discovery/device_enumeration.h"
#include "discovery/frame_sizes.h"
#include "state/library_state.h"

#include <doccam/doccam.h>

using doccam::guarded;
using doccam::state;

int getDeviceCount() {
    return guarded("getDeviceCount", -1,
                   [] { return doccam::enumerateCameras(state().discovery); });
}

const char* getCameraName(int index) {
    return guarded<const char*>("getCameraName", nullptr, [=] {
        return doccam::cameraName(state().discovery, state().session.cam_fd, index);
    });
}

const char* doccam_camera_node(int index) {
    return guarded<const char*>("doccam_camera_node", nullptr,
                                [=] { return doccam::cameraNode(state().discovery, index); });
}

const char* doccam_camera_usb_id(int index) {
    return guarded<const char*>("doccam_camera_usb_id", nullptr,
                                [=] { return doccam::cameraUsbId(state().discovery, index); });
}

int getCameraResolutionCount(int index) {
    return guarded("getCameraResolutionCount", 0,
                   [=] { return doccam::countSizes(state(), index); });
}

int getFormatResolutionCount(int /*index*/) {
    return doccam::selectedSizeCount(state().discovery, state().settings);
}

int getCameraResolution(int index, int* width, int* height) {
    return doccam::sizeAt(state().discovery, state().settings, index, width, height);
}

// Finding cameras and their frame sizes.
#include "base/guarded.h"
#include "discovery/camera_name.h"
#include "discovery/device_enumeration.h"
#include "discovery/frame_sizes.h"

#include <doccam/doccam.h>

using doccam::guarded;

int getDeviceCount() {
    return guarded("getDeviceCount", -1, doccam::enumerateCameras);
}

const char* getCameraName(int index) {
    return guarded<const char*>("getCameraName", nullptr,
                                [=] { return doccam::cameraName(index); });
}

int getCameraResolutionCount(int index) {
    return guarded("getCameraResolutionCount", 0, [=] { return doccam::enumerateSizes(index); });
}

int getFormatResolutionCount(int /*index*/) {
    return doccam::selectedSizeCount();
}

int getCameraResolution(int index, int* width, int* height) {
    return doccam::sizeAt(index, width, height);
}

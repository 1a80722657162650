#include "vm/camera/unit_controls.h"

#include <linux/videodev2.h>

#include <array>

namespace doccam::vm {

std::span<const UnitControl> unitControls() {
    static constexpr std::array<UnitControl, 9> kControls{{
        {V4L2_CID_BRIGHTNESS, kProcessingUnit, 0x02, 0, 2},
        {V4L2_CID_CONTRAST, kProcessingUnit, 0x03, 1, 2},
        {V4L2_CID_GAIN, kProcessingUnit, 0x04, 9, 2},
        {V4L2_CID_HUE, kProcessingUnit, 0x06, 2, 2},
        {V4L2_CID_SATURATION, kProcessingUnit, 0x07, 3, 2},
        {V4L2_CID_GAMMA, kProcessingUnit, 0x09, 5, 2},
        {V4L2_CID_FOCUS_ABSOLUTE, kCameraTerminal, 0x06, 5, 2},
        {V4L2_CID_FOCUS_AUTO, kCameraTerminal, 0x08, 17, 1},
        {V4L2_CID_ZOOM_ABSOLUTE, kCameraTerminal, 0x0b, 9, 2},
    }};
    return kControls;
}

} // namespace doccam::vm

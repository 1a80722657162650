// A desk with sheets under a camera.
#pragma once

#include "scene/desks/desk.h"
#include "scene/lights/light.h"
#include "scene/lights/sensor.h"
#include "scene/sheets/laid_sheet.h"
#include "scene/views/camera_view.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace doccam::virtualcam {

struct DeskScene {
    std::optional<Desk> desk;           // none: one colour
    cv::Scalar plainColour{38, 42, 46}; // of that desk; sRGB, blue first
    CameraView view;
    std::vector<LaidSheet> sheets;     // a later one covers an earlier one
    std::vector<Hand> hands;           // in front of the sheets
    cv::Scalar skin{0.16, 0.28, 0.52}; // linear, blue first
    Light light;
    Sensor sensor;
    std::uint64_t seed = 1; // of the desk's pattern and the noise
};

// The picture that the camera takes, 8-bit sRGB, blue first.
cv::Mat takePicture(const DeskScene& scene, cv::Size picture);

} // namespace doccam::virtualcam

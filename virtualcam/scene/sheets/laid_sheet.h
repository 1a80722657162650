// A sheet that lies on the desk.
#pragma once

#include "scene/views/camera_view.h"

#include <opencv2/core.hpp>

namespace doccam::virtualcam {

struct LaidSheet {
    cv::Mat print;          // 8-bit sRGB, blue first, upright and flat
    cv::Mat opacity;        // CV_8U of the same size, or empty: a full rectangle
    cv::Size2d millimetres; // of the full rectangle
    cv::Point2d centre;     // in the desk's millimetres
    double rotation = 0;    // degrees, clockwise as seen
    double thickness = 0.1; // millimetres
    double shadow = 0.3;    // of the light that the desk beside the sheet's edge loses
};

// Its corners on the desk: clockwise from the top left of the upright sheet.
Quad cornersOnDesk(const LaidSheet& sheet);

// Its upper side's corners in the picture, in the same order.
Quad cornersInPicture(const LaidSheet& sheet, const CameraView& view, cv::Size picture);

// Draws its shadow, its edges and its print into scene (CV_32FC3, linear).
void laySheet(cv::Mat& scene, const LaidSheet& sheet, const CameraView& view);

} // namespace doccam::virtualcam

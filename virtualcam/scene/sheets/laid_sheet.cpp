#include "scene/sheets/laid_sheet.h"

#include "scene/lights/shadow.h"
#include "scene/views/area_warp.h"
#include "scene/views/polygon.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace doccam::virtualcam {

namespace {

const cv::Scalar kEdgeOfPaper(0.42, 0.46, 0.5); // linear, blue first
constexpr double kVisibleThickness = 1;         // millimetres

cv::Matx33d sheetToDesk(const LaidSheet& sheet) {
    const double angle = sheet.rotation * CV_PI / 180;
    return {std::cos(angle),
            -std::sin(angle),
            sheet.centre.x,
            std::sin(angle),
            std::cos(angle),
            sheet.centre.y,
            0,
            0,
            1};
}

double pixelsPerMillimetre(const Quad& seen, const LaidSheet& sheet) {
    return std::sqrt(area(seen) / sheet.millimetres.area());
}

// The sides of a thick sheet lie between its lower and its upper outline.
void drawSides(cv::Mat& scene, const Quad& lower, const Quad& upper) {
    for (std::size_t i = 0; i < lower.size(); ++i) {
        const std::size_t next = (i + 1) % lower.size();
        fillPolygon(scene, {lower[i], lower[next], upper[next], upper[i]},
                    kEdgeOfPaper * (0.6 + 0.12 * static_cast<double>(i)), cv::LINE_8);
    }
}

} // namespace

Quad cornersOnDesk(const LaidSheet& sheet) {
    const double x = sheet.millimetres.width / 2;
    const double y = sheet.millimetres.height / 2;
    return project(sheetToDesk(sheet), Quad{cv::Point2d(-x, -y), {x, -y}, {x, y}, {-x, y}});
}

Quad cornersInPicture(const LaidSheet& sheet, const CameraView& view, cv::Size picture) {
    return project(deskToPicture(view, picture, sheet.thickness), cornersOnDesk(sheet));
}

void laySheet(cv::Mat& scene, const LaidSheet& sheet, const CameraView& view) {
    const Quad upper = cornersInPicture(sheet, view, scene.size());
    const Quad lower = project(deskToPicture(view, scene.size()), cornersOnDesk(sheet));
    const double scale = pixelsPerMillimetre(upper, sheet);
    const double height = std::min(sheet.thickness, 4.0);
    const std::vector<cv::Point2d> outline(lower.begin(), lower.end());
    const cv::Point2d away(0.3 + 0.7 * height, 0.5 + 0.9 * height);
    castShadow(scene, outline, away * scale, (0.5 + 0.6 * height) * scale, sheet.shadow);
    castShadow(scene, outline, away * scale, (3 + 2 * height) * scale, sheet.shadow * 0.4);
    if (sheet.thickness >= kVisibleThickness) {
        drawSides(scene, lower, upper);
    }
    layDown(scene, sheet.print, sheet.opacity,
            deskToPicture(view, scene.size(), sheet.thickness) * sheetToDesk(sheet) *
                pixelsToMillimetres(sheet.print.size(), sheet.millimetres));
}

} // namespace doccam::virtualcam

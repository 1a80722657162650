#include "scene/desk_picture.h"

#include "scene/frames/desk_scene.h"
#include "scene/scene.h"

#include <algorithm>
#include <cmath>

namespace doccam::virtualcam {

namespace {

const cv::Size2d kA4(210, 297);

CameraView viewOf(const SceneSettings& settings, cv::Size picture) {
    CameraView view;
    view.focal = settings.view.focal;
    view.tilt = settings.view.tilt;
    view.tiltDirection = settings.view.tiltDirection;
    view.distance =
        kA4.height * view.focal * picture.width / (settings.sheetHeight * picture.height);
    return view;
}

LaidSheet sheetOf(const SceneSettings& settings, cv::Size picture) {
    const double millimetres = kA4.height / (settings.sheetHeight * picture.height);
    LaidSheet sheet;
    sheet.millimetres = kA4;
    sheet.centre = {(settings.centreX - 0.5) * picture.width * millimetres,
                    (settings.centreY - 0.5) * picture.height * millimetres};
    sheet.rotation = settings.angle;
    return sheet;
}

// A sheet far away may lie behind the camera, where it must not be seen upside down.
bool isInFront(const LaidSheet& sheet, const CameraView& view, cv::Size picture) {
    const cv::Matx33d placing = deskToPicture(view, picture, sheet.thickness);
    const Quad corners = cornersOnDesk(sheet);
    return std::all_of(corners.begin(), corners.end(), [&](const cv::Point2d& corner) {
        return (placing * cv::Vec3d(corner.x, corner.y, 1))[2] > view.distance / 10;
    });
}

Light lightOf(const SceneLight& settings, const cv::Point2f& middle, cv::Size picture) {
    Light light;
    light.exposure = 1;
    light.gradient = settings.gradient;
    light.gradientDirection = settings.gradientDirection;
    light.vignetting = settings.vignetting;
    const double height = picture.height;
    if (settings.handShadow > 0) {
        cv::RNG random(1);
        light.shadows.push_back(
            {spreadHand(middle, 205, height / 22, random), height / 600, settings.handShadow});
    }
    if (settings.glare > 0) {
        const cv::Point2d centre = cv::Point2d(middle) / height + cv::Point2d(0.08, -0.12);
        light.glares.push_back({centre, {0.14, 0.05}, 30, settings.glare});
    }
    return light;
}

} // namespace

bool isPlain(const SceneSettings& settings) {
    return settings.desk == "plain" && settings.view == SceneView{} &&
           settings.light == SceneLight{};
}

std::array<cv::Point2f, 4> cornersOnDesk(const SceneSettings& settings, cv::Size picture) {
    const Quad seen =
        cornersInPicture(sheetOf(settings, picture), viewOf(settings, picture), picture);
    std::array<cv::Point2f, 4> corners;
    std::copy(seen.begin(), seen.end(), corners.begin());
    return corners;
}

cv::Mat drawOnDesk(const SceneSettings& settings, cv::Size picture) {
    DeskScene scene;
    scene.desk = deskNamed(settings.desk);
    scene.view = viewOf(settings, picture);
    LaidSheet sheet = sheetOf(settings, picture);
    const std::array<cv::Point2f, 4> corners = cornersOnDesk(settings, picture);
    const cv::Point2f middle = (corners[0] + corners[1] + corners[2] + corners[3]) / 4;
    if (isInFront(sheet, scene.view, picture)) {
        sheet.print = flatSheet(settings);
        scene.sheets.push_back(sheet);
    }
    scene.light = lightOf(settings.light, middle, picture);
    scene.sensor = {settings.view.blur, 0};
    return takePicture(scene, picture);
}

} // namespace doccam::virtualcam

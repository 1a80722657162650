#include "code_shots.h"

#include "code_sheet.h"
#include "code_surfaces.h"
#include "scene/frames/desk_scene.h"
#include "scene/views/area_warp.h"
#include "scene/views/linear_light.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::test {

namespace {

namespace cam = virtualcam;

constexpr double kRoom = 0.94; // of the frame that codes fill at most

// The codes as large as asked for, or as large as fits. On the sheet one pixel is a millimetre.
double scaleOf(cv::Size codes, const Shot& shot) {
    const double angle = shot.angle * CV_PI / 180;
    const double c = std::abs(std::cos(angle));
    const double s = std::abs(std::sin(angle));
    const double width = codes.width * c + codes.height * s;
    const double height = codes.width * s + codes.height * c;
    const double shrink = shot.tilt > 0 || shot.onDesk ? 0.85 : 1;
    return std::min({shot.module / kSheetModule, shrink * kRoom * shot.frame.width / width,
                     shrink * kRoom * shot.frame.height / height});
}

cv::Mat bent(const cv::Mat& sheet, const Shot& shot, cv::RNG& random) {
    switch (shot.surface) {
    case Surface::kCan:
        return aroundCan(sheet, shot.bend, random.uniform(0, 2) == 0, random);
    case Surface::kCrumpled:
        return crumpled(sheet, shot.bend * kSheetModule, random);
    case Surface::kFlat:
        break;
    }
    return sheet;
}

CodeSheet sheetFor(const std::vector<PrintedCode>& codes, const Shot& shot, cv::RNG& random) {
    SheetPlan plan;
    plan.aspect = static_cast<double>(shot.frame.width) / shot.frame.height;
    plan.turn = shot.codeTurn;
    plan.inverted = shot.inverted;
    plan.text = shot.text;
    if (shot.text) {
        // On a desk the sheet's edges are in view.
        const double part = shot.onDesk ? 0.75 : 1.3;
        plan.least = cv::Size2d(shot.frame) * (part * kSheetModule / shot.module);
    }
    CodeSheet sheet = printSheet(codes, plan, random);
    sheet.picture = bent(sheet.picture, shot, random);
    return sheet;
}

cam::CameraView viewOf(const Shot& shot, double scale, cv::RNG& random) {
    cam::CameraView view;
    view.tilt = shot.tilt;
    view.tiltDirection = random.uniform(0.0, 360.0);
    view.distance = view.focal * shot.frame.width / scale;
    return view;
}

cam::Light lightOf(const Shot& shot, cv::RNG& random) {
    cam::Light light;
    light.gradient = shot.gradient;
    light.gradientDirection = random.uniform(0.0, 360.0);
    light.vignetting = shot.onDesk ? 0.3 : 0;
    light.tint = {0.92, 0.98, 1};
    const double aspect = static_cast<double>(shot.frame.width) / shot.frame.height;
    if (shot.onDesk) {
        const cv::Point2d tip(shot.frame.width * random.uniform(0.4, 0.6),
                              shot.frame.height * random.uniform(0.4, 0.6));
        light.shadows.push_back(
            {cam::spreadHand(tip, random.uniform(180.0, 300.0), shot.frame.height / 22.0, random),
             shot.frame.height / 150.0, random.uniform(0.1, 0.5)});
    }
    if (shot.glare > 0) {
        const cv::Point2d centre(aspect / 2 + random.uniform(-0.1, 0.1),
                                 0.5 + random.uniform(-0.05, 0.05));
        light.glares.push_back({centre, {0.12, 0.035}, random.uniform(0.0, 180.0), shot.glare});
    }
    return light;
}

// A camera that moves draws each point as a line.
void move(cv::Mat& linear, double pixels, cv::RNG& random) {
    if (pixels < 0.5) {
        return;
    }
    const int reach = cvCeil(pixels / 2) + 1;
    const double angle = random.uniform(0.0, CV_PI);
    cv::Mat kernel(2 * reach + 1, 2 * reach + 1, CV_32F, cv::Scalar(0));
    constexpr int kSteps = 200;
    for (int i = 0; i < kSteps; ++i) {
        const double along = pixels * ((i + 0.5) / kSteps - 0.5);
        const int x = cvRound(reach + along * std::cos(angle));
        const int y = cvRound(reach + along * std::sin(angle));
        kernel.at<float>(y, x) += 1.0F / kSteps;
    }
    cv::filter2D(linear, linear, -1, kernel);
}

cv::Mat onPaper(const CodeSheet& sheet, const Shot& shot, double scale, cv::RNG& random) {
    // Dark around an inverted print, as the paper is white around others.
    cv::Mat scene(shot.frame, CV_32FC3, cv::Scalar::all(shot.inverted ? 0.0 : 0.98));
    const double angle = shot.angle * CV_PI / 180;
    const cv::Matx33d turn(std::cos(angle), -std::sin(angle), random.uniform(-0.5, 0.5) / scale,
                           std::sin(angle), std::cos(angle), random.uniform(-0.5, 0.5) / scale, 0,
                           0, 1);
    const cv::Size size = sheet.picture.size();
    cam::layDown(scene, sheet.picture, {},
                 cam::deskToPicture(viewOf(shot, scale, random), shot.frame) * turn *
                     cam::pixelsToMillimetres(size, size));
    cam::shine(scene, lightOf(shot, random));
    return scene;
}

cv::Mat onDesk(const CodeSheet& sheet, const Shot& shot, double scale, cv::RNG& random) {
    cam::DeskScene scene;
    scene.desk = cam::kDesks[random.uniform(0, 5)];
    scene.view = viewOf(shot, scale, random);
    cam::LaidSheet laid;
    laid.print = sheet.picture;
    laid.millimetres = sheet.picture.size();
    laid.rotation = shot.angle;
    laid.thickness = 0;
    scene.sheets.push_back(laid);
    scene.light = lightOf(shot, random);
    scene.sensor = {0, 0};
    scene.seed = random.next();
    cv::Mat linear;
    cam::toLinear(cam::takePicture(scene, shot.frame)).convertTo(linear, CV_32F, 1 / 65535.0);
    return linear;
}

} // namespace

cv::Mat takeShot(const std::vector<PrintedCode>& codes, const Shot& shot, cv::RNG& random) {
    const CodeSheet sheet = sheetFor(codes, shot, random);
    const double scale = scaleOf(sheet.codes, shot);
    cv::Mat linear =
        shot.onDesk ? onDesk(sheet, shot, scale, random) : onPaper(sheet, shot, scale, random);
    const double module = scale * kSheetModule;
    move(linear, shot.motion * module, random);
    const cv::Mat seen = cam::expose(linear, {shot.blur * module, shot.noise}, random);
    std::vector<unsigned char> file;
    cv::imencode(".jpg", seen, file, {cv::IMWRITE_JPEG_QUALITY, shot.quality});
    return cv::imdecode(file, cv::IMREAD_GRAYSCALE);
}

} // namespace doccam::test

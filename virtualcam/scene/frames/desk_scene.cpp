#include "scene/frames/desk_scene.h"

#include "scene/views/area_warp.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::virtualcam {

namespace {

constexpr double kLargestTexture = 3600; // pixels a side
constexpr double kMargin = 10;           // millimetres beyond what is seen

// The part of the desk that the picture shows.
cv::Rect2d visibleDesk(const CameraView& view, cv::Size picture) {
    const cv::Matx33d toDesk = deskToPicture(view, picture).inv();
    const double right = picture.width;
    const double bottom = picture.height;
    const Quad seen =
        project(toDesk, Quad{cv::Point2d(0, 0), {right, 0}, {right, bottom}, {0, bottom}});
    cv::Point2d low = seen[0];
    cv::Point2d high = seen[0];
    for (const cv::Point2d& point : seen) {
        low = {std::min(low.x, point.x), std::min(low.y, point.y)};
        high = {std::max(high.x, point.x), std::max(high.y, point.y)};
    }
    return {low - cv::Point2d(kMargin, kMargin), high + cv::Point2d(kMargin, kMargin)};
}

void layDesk(cv::Mat& pixels, const DeskScene& scene, cv::RNG& random) {
    const cv::Rect2d part = visibleDesk(scene.view, pixels.size());
    const double scale = kLargestTexture / std::max(part.width, part.height);
    const cv::Size texture(cvCeil(part.width * scale), cvCeil(part.height * scale));
    const cv::Mat flat = scene.desk ? drawDesk(*scene.desk, texture, scale, random)
                                    : cv::Mat(texture, CV_8UC3, scene.plainColour);
    const cv::Point2d middle = (part.tl() + part.br()) / 2;
    const cv::Matx33d moved(1, 0, middle.x, 0, 1, middle.y, 0, 0, 1);
    layDown(pixels, flat, {},
            deskToPicture(scene.view, pixels.size()) * moved *
                pixelsToMillimetres(texture, part.size()));
}

} // namespace

cv::Mat takePicture(const DeskScene& scene, cv::Size picture) {
    cv::RNG random(scene.seed * 0x9e3779b97f4a7c15ULL + 1);
    cv::Mat pixels(picture, CV_32FC3, cv::Scalar::all(0));
    layDesk(pixels, scene, random);
    for (const LaidSheet& sheet : scene.sheets) {
        laySheet(pixels, sheet, scene.view);
    }
    for (const Hand& hand : scene.hands) {
        paintHand(pixels, hand, scene.skin);
    }
    shine(pixels, scene.light);
    return expose(std::move(pixels), scene.sensor, random);
}

} // namespace doccam::virtualcam

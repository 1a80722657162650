#include "scene/views/area_warp.h"

#include "scene/views/camera_view.h"
#include "scene/views/linear_light.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace doccam::virtualcam {

namespace {

constexpr int kSamples = 2; // a side, of each pixel
constexpr int kStrip = 128; // rows at a time
constexpr double kFull = 65535;

Quad outerCorners(cv::Size size) {
    const double right = size.width - 0.5;
    const double bottom = size.height - 0.5;
    return {cv::Point2d(-0.5, -0.5), {right, -0.5}, {right, bottom}, {-0.5, bottom}};
}

// Four channels of 16 bits, the colours multiplied by the opacity in the last.
cv::Mat premultiplied(const cv::Mat& flat, const cv::Mat& opacity) {
    cv::Mat colours = toLinear(flat);
    cv::Mat alpha(flat.size(), CV_16U, cv::Scalar::all(kFull));
    if (!opacity.empty()) {
        opacity.convertTo(alpha, CV_16U, kFull / 255);
        cv::Mat wide;
        cv::merge(std::vector<cv::Mat>(3, alpha), wide);
        cv::multiply(colours, wide, colours, 1 / kFull);
    }
    const cv::Mat parts[] = {colours, alpha};
    cv::Mat joined(flat.size(), CV_16UC4);
    const int pairs[] = {0, 0, 1, 1, 2, 2, 3, 3};
    cv::mixChannels(parts, 2, &joined, 1, pairs, 4);
    return joined;
}

void blend(cv::Mat scene, const cv::Mat& layer) {
    for (int y = 0; y < scene.rows; ++y) {
        auto* const to = scene.ptr<cv::Vec3f>(y);
        const auto* const from = layer.ptr<cv::Vec4w>(y);
        for (int x = 0; x < scene.cols; ++x) {
            const float through = 1 - from[x][3] * static_cast<float>(1 / kFull);
            for (int c = 0; c < 3; ++c) {
                to[x][c] = to[x][c] * through + from[x][c] * static_cast<float>(1 / kFull);
            }
        }
    }
}

// The rows and columns of the scene that the quadrilateral touches.
cv::Rect touched(const Quad& quad, cv::Size scene) {
    std::vector<cv::Point2f> points(quad.begin(), quad.end());
    cv::Rect box = cv::boundingRect(points);
    box -= cv::Point(2, 2);
    box += cv::Size(4, 4);
    return box & cv::Rect({0, 0}, scene);
}

} // namespace

cv::Matx33d pixelsToMillimetres(cv::Size pixels, cv::Size2d millimetres) {
    const double x = millimetres.width / pixels.width;
    const double y = millimetres.height / pixels.height;
    return {x, 0, (0.5 - pixels.width / 2.0) * x, 0, y, (0.5 - pixels.height / 2.0) * y, 0, 0, 1};
}

void layDown(cv::Mat& scene, const cv::Mat& flat, const cv::Mat& opacity,
             const cv::Matx33d& placing) {
    cv::Mat source = premultiplied(flat, opacity);
    cv::Matx33d toScene = placing;
    const Quad seen = project(placing, outerCorners(flat.size()));
    // Bilinear samples see two points a side, so a finer source is averaged first.
    const double shrink =
        kSamples * std::sqrt(area(seen) / (static_cast<double>(flat.cols) * flat.rows));
    if (shrink < 0.8) {
        cv::resize(source, source, {}, shrink, shrink, cv::INTER_AREA);
        const double x = static_cast<double>(flat.cols) / source.cols;
        const double y = static_cast<double>(flat.rows) / source.rows;
        toScene = placing * cv::Matx33d(x, 0, x / 2 - 0.5, 0, y, y / 2 - 0.5, 0, 0, 1);
    }
    const cv::Rect box = touched(seen, scene.size());
    for (int top = box.y; top < box.y + box.height; top += kStrip) {
        const cv::Rect strip(box.x, top, box.width, std::min(kStrip, box.y + box.height - top));
        constexpr double kCentre = (kSamples - 1) / 2.0;
        const cv::Matx33d toSamples(kSamples, 0, kCentre - kSamples * strip.x, 0, kSamples,
                                    kCentre - kSamples * strip.y, 0, 0, 1);
        cv::Mat samples;
        cv::warpPerspective(source, samples, toSamples * toScene, strip.size() * kSamples,
                            cv::INTER_LINEAR, cv::BORDER_CONSTANT);
        cv::resize(samples, samples, strip.size(), 0, 0, cv::INTER_AREA);
        blend(scene(strip), samples);
    }
}

} // namespace doccam::virtualcam

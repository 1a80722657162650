#include "scene/lights/shadow.h"

#include "scene/views/polygon.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::virtualcam {

void castShadow(cv::Mat& scene, const cv::Mat& mask, double blur, double strength) {
    // Wide blurs are made in a smaller picture.
    const double shrink = std::min(1.0, 3 / std::max(blur, 0.1));
    cv::Mat small;
    cv::resize(mask, small, {}, shrink, shrink, cv::INTER_AREA);
    small.convertTo(small, CV_32F, -strength / 255, 1);
    cv::GaussianBlur(small, small, {}, std::max(blur * shrink, 0.3));
    cv::Mat light;
    cv::resize(small, light, scene.size(), 0, 0, cv::INTER_LINEAR);
    for (int y = 0; y < scene.rows; ++y) {
        auto* const pixels = scene.ptr<cv::Vec3f>(y);
        const auto* const lights = light.ptr<float>(y);
        for (int x = 0; x < scene.cols; ++x) {
            pixels[x] *= lights[x];
        }
    }
}

void castShadow(cv::Mat& scene, const std::vector<cv::Point2d>& polygon, cv::Point2d away,
                double blur, double strength) {
    std::vector<cv::Point2d> moved;
    for (const cv::Point2d& point : polygon) {
        moved.push_back(point + away);
    }
    cv::Mat mask(scene.size(), CV_8U, cv::Scalar(0));
    fillPolygon(mask, moved, cv::Scalar(255), cv::LINE_8);
    castShadow(scene, mask, blur, strength);
}

} // namespace doccam::virtualcam

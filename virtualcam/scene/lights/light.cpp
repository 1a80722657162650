#include "scene/lights/light.h"

#include "scene/lights/shadow.h"

#include <opencv2/imgproc.hpp>

#include <cmath>

namespace doccam::virtualcam {

namespace {

constexpr int kSmooth = 16; // lights that vary slowly are computed for every so many pixels

cv::Mat falloff(const Light& light, cv::Size size) {
    const double angle = light.gradientDirection * CV_PI / 180;
    const double reach =
        std::abs(std::cos(angle)) * size.width + std::abs(std::sin(angle)) * size.height;
    cv::Mat level(size, CV_32F);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const cv::Point2d at(x - size.width / 2.0, y - size.height / 2.0);
            const double along = (at.x * std::cos(angle) + at.y * std::sin(angle)) / reach + 0.5;
            const double radius = cv::norm(at) * 2 / std::hypot(size.width, size.height);
            const double lamp = std::pow(light.gradient, -along);
            const double lens = 1 - light.vignetting * std::pow(radius, 4);
            level.at<float>(y, x) = static_cast<float>(light.exposure * lamp * lens);
        }
    }
    return level;
}

// A lamp's reflection: a bright core in a wide halo.
void addGlare(cv::Mat& added, const Glare& glare) {
    const double height = added.rows;
    const double angle = glare.angle * CV_PI / 180;
    for (int y = 0; y < added.rows; ++y) {
        for (int x = 0; x < added.cols; ++x) {
            const cv::Point2d at(x / height - glare.centre.x, y / height - glare.centre.y);
            const double u = (at.x * std::cos(angle) + at.y * std::sin(angle)) / glare.size.width;
            const double v = (at.y * std::cos(angle) - at.x * std::sin(angle)) / glare.size.height;
            const double square = u * u + v * v;
            added.at<float>(y, x) += static_cast<float>(
                glare.strength * (0.8 * std::exp(-square * square) + 0.2 * std::exp(-square / 4)));
        }
    }
}

} // namespace

void shine(cv::Mat& scene, const Light& light) {
    for (const HandShadow& shadow : light.shadows) {
        castShadow(scene, handMask(shadow.hand, scene.size()), shadow.blur, shadow.strength);
    }
    const cv::Size small(scene.cols / kSmooth + 1, scene.rows / kSmooth + 1);
    cv::Mat level;
    cv::resize(falloff(light, small), level, scene.size(), 0, 0, cv::INTER_CUBIC);
    cv::Mat added(small, CV_32F, cv::Scalar(0));
    for (const Glare& glare : light.glares) {
        addGlare(added, glare);
    }
    cv::resize(added, added, scene.size(), 0, 0, cv::INTER_CUBIC);
    const cv::Vec3f tint(static_cast<float>(light.tint[0]), static_cast<float>(light.tint[1]),
                         static_cast<float>(light.tint[2]));
    for (int y = 0; y < scene.rows; ++y) {
        auto* const pixels = scene.ptr<cv::Vec3f>(y);
        for (int x = 0; x < scene.cols; ++x) {
            const float lamp = level.at<float>(y, x);
            const float shine = added.at<float>(y, x);
            for (int c = 0; c < 3; ++c) {
                pixels[x][c] = (pixels[x][c] * lamp + shine) * tint[c];
            }
        }
    }
}

} // namespace doccam::virtualcam

#include "scene/lights/sensor.h"

#include "scene/views/linear_light.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::virtualcam {

namespace {

constexpr float kReadNoise = 0.004F; // the square of the dark noise, of that at full scale

// Photon noise grows with the root of the light. One of many thousand deviations is looked up.
void addPhotonNoise(cv::Mat& scene, double deviation, cv::RNG& random) {
    constexpr int kCount = 1 << 18;
    cv::Mat deviations(1, kCount, CV_32F);
    random.fill(deviations, cv::RNG::NORMAL, 0, deviation);
    const auto* const table = deviations.ptr<float>();
    const int samples = scene.cols * scene.channels();
    for (int y = 0; y < scene.rows; ++y) {
        auto* const row = scene.ptr<float>(y);
        for (int i = 0; i < samples; ++i) {
            const float light = std::max(row[i], 0.0F) + kReadNoise;
            row[i] += std::sqrt(light) * table[random.next() % kCount];
        }
    }
}

} // namespace

cv::Mat expose(cv::Mat scene, const Sensor& sensor, cv::RNG& random) {
    if (sensor.defocus > 0.1) {
        cv::GaussianBlur(scene, scene, {}, sensor.defocus);
    }
    if (sensor.noise > 0) {
        addPhotonNoise(scene, sensor.noise, random);
    }
    return fromLinear(scene);
}

} // namespace doccam::virtualcam

// Landscapes as pages print them.
#include "scene/desks/textures.h"
#include "scene/pages/contents.h"

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <vector>

namespace doccam::virtualcam {

namespace {

struct Mood {
    cv::Scalar zenith; // blue first
    cv::Scalar horizon;
    cv::Scalar land;
    cv::Scalar near;
};

const Mood kMoods[] = {{{205, 140, 70}, {235, 220, 205}, {120, 135, 110}, {40, 84, 58}},
                       {{120, 70, 60}, {110, 170, 240}, {95, 80, 105}, {38, 34, 46}},
                       {{190, 175, 160}, {225, 225, 225}, {150, 150, 140}, {70, 90, 80}},
                       {{170, 110, 40}, {215, 200, 160}, {110, 150, 180}, {50, 110, 150}}};

cv::Scalar between(const cv::Scalar& a, const cv::Scalar& b, double part) {
    return a + (b - a) * part;
}

void paintSky(cv::Mat& picture, const Mood& mood, cv::RNG& random) {
    for (int y = 0; y < picture.rows; ++y) {
        picture.row(y).setTo(between(mood.zenith, mood.horizon, y / (0.6 * picture.rows)));
    }
    cv::Mat clouds =
        smoothNoise(picture.size(), {picture.cols / 5.0, picture.rows / 9.0}, random) +
        0.5 * smoothNoise(picture.size(), {picture.cols / 18.0, picture.rows / 30.0}, random) +
        0.25 * smoothNoise(picture.size(), {picture.cols / 60.0, picture.rows / 80.0}, random);
    cv::Mat wide;
    cv::merge(std::vector<cv::Mat>(3, cv::max(clouds, 0.0) * 42), wide);
    picture += wide;
}

// A ridge across the picture, its slope grained.
void paintRidge(cv::Mat& picture, double height, double rough, const cv::Scalar& colour,
                cv::RNG& random) {
    const cv::Mat line = smoothNoise({picture.cols, 4}, {picture.cols / 6.0, 1}, random) +
                         0.3 * smoothNoise({picture.cols, 4}, {picture.cols / 30.0, 1}, random) +
                         0.1 * smoothNoise({picture.cols, 4}, {picture.cols / 150.0, 1}, random);
    const cv::Mat grain = smoothNoise(picture.size(), {9, 6}, random) +
                          0.8 * smoothNoise(picture.size(), {3, 3}, random) +
                          1.2 * smoothNoise(picture.size(), {70, 40}, random);
    for (int x = 0; x < picture.cols; ++x) {
        const double top = height * picture.rows - rough * picture.rows * line.at<float>(0, x);
        for (int y = std::max(0, cvRound(top)); y < picture.rows; ++y) {
            const float shade = 1 + 0.14F * grain.at<float>(y, x);
            picture.at<cv::Vec3f>(y, x) =
                cv::Vec3f(static_cast<float>(colour[0]), static_cast<float>(colour[1]),
                          static_cast<float>(colour[2])) *
                shade;
        }
    }
}

// Crowns of leaves on stems.
void plantTrees(cv::Mat& picture, const cv::Scalar& colour, cv::RNG& random) {
    const double unit = picture.rows;
    for (int i = random.uniform(3, 7); i > 0; --i) {
        const cv::Point2d foot(random.uniform(0.0, 1.0) * picture.cols,
                               random.uniform(0.78, 0.96) * unit);
        const double height = random.uniform(0.16, 0.38) * unit;
        cv::line(picture, foot, foot - cv::Point2d(0, height), colour * 0.45,
                 std::max(1, cvRound(height * 0.06)), cv::LINE_8);
        for (int leaf = 0; leaf < 320; ++leaf) {
            const double angle = random.uniform(0.0, 2 * CV_PI);
            const double radius = std::sqrt(random.uniform(0.0, 1.0)) * height * 0.42;
            const cv::Point2d at =
                foot + cv::Point2d(radius * std::cos(angle), radius * std::sin(angle) - height);
            const double light = 0.75 - 0.45 * std::sin(angle) * radius / (0.42 * height);
            cv::circle(picture, at, std::max(1, cvRound(height * random.uniform(0.015, 0.04))),
                       colour * (light * random.uniform(0.7, 1.4)), cv::FILLED, cv::LINE_8);
        }
    }
}

} // namespace

cv::Mat drawPhotograph(cv::Size pixels, cv::RNG& random) {
    const Mood& mood = kMoods[random.uniform(0, 4)];
    cv::Mat picture(pixels, CV_32FC3);
    paintSky(picture, mood, random);
    paintRidge(picture, 0.5, 0.07, between(mood.land, mood.horizon, 0.45), random);
    paintRidge(picture, 0.62, 0.05, mood.land, random);
    paintRidge(picture, 0.8, 0.03, mood.near, random);
    plantTrees(picture, mood.near, random);
    picture.convertTo(picture, CV_8U);
    return picture;
}

} // namespace doccam::virtualcam

// Boards of wood: growth rings that the saw has cut lengthwise, pores, joints.
#include "scene/desks/textures.h"

#include <opencv2/imgproc.hpp>

#include <cmath>

namespace doccam::virtualcam {

namespace {

struct Timber {
    cv::Scalar colour; // blue first
    cv::Scalar grain;
};

Timber chosenTimber(cv::RNG& random) {
    static const Timber kTimbers[] = {{{88, 134, 180}, {14, 15, 15}},  // oak
                                      {{120, 172, 208}, {13, 12, 10}}, // beech
                                      {{42, 68, 104}, {10, 12, 14}},   // walnut
                                      {{152, 196, 220}, {12, 10, 8}},  // maple
                                      {{54, 82, 138}, {10, 12, 14}}};  // cherry
    return kTimbers[random.uniform(0, 5)];
}

// The rings cross the board slowly: bands along it, bent by smooth noise.
cv::Mat rings(cv::Size pixels, double scale, cv::RNG& random) {
    cv::Mat bend = 14 * scale * smoothNoise(pixels, {180 * scale, 40 * scale}, random);
    const double period = random.uniform(6.0, 14.0) * scale;
    cv::Mat pattern(pixels, CV_32F);
    for (int y = 0; y < pixels.height; ++y) {
        const auto* const from = bend.ptr<float>(y);
        auto* const to = pattern.ptr<float>(y);
        for (int x = 0; x < pixels.width; ++x) {
            const double phase = (y + static_cast<double>(from[x])) / period;
            const double part = phase - std::floor(phase);
            to[x] = static_cast<float>(part * part * 1.6 - 0.55);
        }
    }
    return pattern;
}

void sawJoints(cv::Mat& picture, double scale, cv::RNG& random) {
    const double board = random.uniform(70.0, 160.0) * scale;
    for (double y = random.uniform(0.0, board); y < picture.rows; y += board) {
        const auto row = cvRound(y);
        cv::line(picture, {0, row}, {picture.cols, row}, cv::Scalar(22, 30, 40),
                 std::max(1, cvRound(0.5 * scale)), cv::LINE_AA);
    }
}

} // namespace

cv::Mat drawWood(cv::Size pixels, double pixelsPerMillimetre, cv::RNG& random) {
    const double scale = pixelsPerMillimetre;
    // Drawn along the rows, and half of the desks turned.
    const bool turned = random.uniform(0, 2) == 1;
    const cv::Size board = turned ? cv::Size(pixels.height, pixels.width) : pixels;
    const cv::Mat pattern = rings(board, scale, random) +
                            0.45 * smoothNoise(board, {40 * scale, 0.5 * scale}, random) +
                            0.3 * smoothNoise(board, {9 * scale, 0.3 * scale}, random) +
                            0.3 * smoothNoise(board, {300 * scale, 60 * scale}, random);
    const Timber timber = chosenTimber(random);
    cv::Mat picture = coloured(pattern, timber.colour, timber.grain);
    if (random.uniform(0, 2) == 1) {
        sawJoints(picture, scale, random);
    }
    if (turned) {
        cv::transpose(picture, picture);
    }
    return picture;
}

} // namespace doccam::virtualcam

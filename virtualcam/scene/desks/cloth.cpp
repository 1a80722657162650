// Woven table cloths: checks, stripes, tartans and dots.
#include "scene/desks/textures.h"

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <vector>

namespace doccam::virtualcam {

namespace {

using Threads = std::vector<cv::Vec3f>;

const cv::Vec3f kDyes[] = {{52, 42, 168},   {128, 72, 38},  {70, 116, 52}, {60, 150, 214},
                           {46, 40, 44},    {158, 118, 96}, {96, 92, 190}, {236, 240, 242},
                           {222, 232, 236}, {150, 196, 214}};

cv::Vec3f dye(cv::RNG& random) {
    return kDyes[random.uniform(0, 10)];
}

// The colours of the threads of one direction, striped with that many bands before they repeat.
Threads dyed(int count, double scale, int bands, cv::RNG& random) {
    std::vector<cv::Vec3f> colours;
    std::vector<double> ends;
    double width = 0;
    for (int i = 0; i < bands; ++i) {
        colours.push_back(dye(random));
        width += random.uniform(3.0, 22.0) * scale;
        ends.push_back(width);
    }
    Threads threads(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const double at = std::fmod(i, width);
        std::size_t band = 0;
        while (band + 1 < ends.size() && at >= ends[band]) {
            ++band;
        }
        threads[static_cast<std::size_t>(i)] = colours[band];
    }
    return threads;
}

// Warp and weft, half of each seen.
cv::Mat woven(const Threads& across, const Threads& down) {
    cv::Mat picture(static_cast<int>(down.size()), static_cast<int>(across.size()), CV_32FC3);
    for (int y = 0; y < picture.rows; ++y) {
        auto* const to = picture.ptr<cv::Vec3f>(y);
        for (int x = 0; x < picture.cols; ++x) {
            to[x] =
                (across[static_cast<std::size_t>(x)] + down[static_cast<std::size_t>(y)]) * 0.5F;
        }
    }
    return picture;
}

void printDots(cv::Mat& picture, double scale, cv::RNG& random) {
    const double pitch = random.uniform(10.0, 28.0) * scale;
    const int radius = cvRound(pitch * random.uniform(0.15, 0.32));
    const cv::Vec3f colour = dye(random);
    int row = 0;
    for (double y = 0; y < picture.rows + pitch; y += pitch, ++row) {
        for (double x = row % 2 * pitch / 2; x < picture.cols + pitch; x += pitch) {
            cv::circle(picture, {cvRound(x), cvRound(y)}, radius,
                       cv::Scalar(colour[0], colour[1], colour[2]), cv::FILLED, cv::LINE_AA);
        }
    }
}

void addWeave(cv::Mat& picture, double scale, cv::RNG& random) {
    const cv::Mat pattern = 5 * smoothNoise(picture.size(), {0.5 * scale, 2.5 * scale}, random) +
                            5 * smoothNoise(picture.size(), {2.5 * scale, 0.5 * scale}, random);
    cv::Mat wide;
    cv::merge(std::vector<cv::Mat>(3, pattern), wide);
    picture += wide;
}

} // namespace

cv::Mat drawCloth(cv::Size pixels, double pixelsPerMillimetre, cv::RNG& random) {
    const double scale = pixelsPerMillimetre;
    const int kind = random.uniform(0, 4);
    const int across = kind == 3 ? 1 : 2 + random.uniform(0, 4);
    const int down = kind == 0 ? 2 : kind == 1 ? 1 : across;
    cv::Mat picture =
        woven(dyed(pixels.width, scale, across, random), dyed(pixels.height, scale, down, random));
    if (kind == 3) {
        printDots(picture, scale, random);
    }
    addWeave(picture, scale, random);
    picture.convertTo(picture, CV_8U);
    return picture;
}

} // namespace doccam::virtualcam

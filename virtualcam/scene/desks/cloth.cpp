// Table cloths: woven checks, stripes, tartans and gingham, printed dots and squares.
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

// Bands of threads, from side to side, before they repeat.
struct Bands {
    std::vector<cv::Vec3f> colours;
    std::vector<double> ends; // in pixels
};

Bands anyBands(int count, double scale, cv::RNG& random) {
    Bands bands;
    double width = 0;
    for (int i = 0; i < count; ++i) {
        bands.colours.push_back(dye(random));
        width += random.uniform(3.0, 22.0) * scale;
        bands.ends.push_back(width);
    }
    return bands;
}

// One colour and white, equally wide.
Bands gingham(double scale, cv::RNG& random) {
    const double width = random.uniform(4.0, 40.0) * scale;
    return {{dye(random), {236, 240, 242}}, {width, 2 * width}};
}

Threads dyed(int count, const Bands& bands) {
    const auto& [colours, ends] = bands;
    const double width = ends.back();
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

// A board of squares.
cv::Mat squares(cv::Size pixels, double scale, cv::RNG& random) {
    const double side = random.uniform(8.0, 50.0) * scale;
    const cv::Vec3f colours[] = {dye(random), dye(random)};
    cv::Mat picture(pixels, CV_32FC3);
    for (int y = 0; y < picture.rows; ++y) {
        auto* const to = picture.ptr<cv::Vec3f>(y);
        for (int x = 0; x < picture.cols; ++x) {
            to[x] = colours[(static_cast<int>(x / side) + static_cast<int>(y / side)) % 2];
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

    enum Kind { kChecks, kStripes, kTartan, kDots, kGingham, kSquares, kKinds };

    const int kind = random.uniform(0, static_cast<int>(kKinds));
    const int count = 2 + random.uniform(0, 4);
    cv::Mat picture;
    if (kind == kSquares) {
        picture = squares(pixels, scale, random);
    } else if (kind == kGingham) {
        const Bands bands = gingham(scale, random);
        picture = woven(dyed(pixels.width, bands), dyed(pixels.height, bands));
    } else {
        const int across = kind == kDots ? 1 : count;
        const int down = kind == kChecks ? 2 : kind == kStripes ? 1 : across;
        const Bands warp = anyBands(across, scale, random);
        const Bands weft = anyBands(down, scale, random);
        picture = woven(dyed(pixels.width, warp), dyed(pixels.height, weft));
    }
    if (kind == kDots) {
        printDots(picture, scale, random);
    }
    addWeave(picture, scale, random);
    picture.convertTo(picture, CV_8U);
    return picture;
}

} // namespace doccam::virtualcam

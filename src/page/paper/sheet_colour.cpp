// The colour of a sheet that is not white.
#include "page/paper/sheet_colour.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace doccam::page {

namespace {

constexpr double kGround = 0.25;      // of the page
constexpr double kSpans = 0.8;        // of its width and height
constexpr double kRatherSheet = 6;    // times a paler region: what is smaller lies on a desk
constexpr double kOtherColour = 0.25; // how far channels differ, beside paper
constexpr double kDarkGround = 0.25;  // of what paper shows
constexpr double kGreen = 0.085;      // more than any lamp
constexpr double kPink = 0.045;       // the same of red and blue
constexpr double kAmber = 0.55;       // the strongest saturation of a lamp's cast
constexpr double kBlue = 0.35;
constexpr double kBrightest = 0.99; // of the cells are darker than white would be
constexpr double kLeastWhite = 190; // darker pages are seen as dark
constexpr double kPalest = 0.94;    // a sheet that is not white

cv::Scalar colourOf(const Region& region, const Cells& cells) {
    return cv::mean(cells.colour(region.box), cells.labels(region.box) == region.label);
}

// Of shares of the brightest channel, blue first.
bool isLampCast(const cv::Scalar& colour) {
    const double highest = std::max({colour[0], colour[1], colour[2], 1.0});
    const double blue = colour[0] / highest;
    const double green = colour[1] / highest;
    const double red = colour[2] / highest;
    const double saturation = 1 - std::min({blue, green, red});
    const double greenness = green - (blue + red) / 2;
    return greenness <= kGreen && greenness >= -kPink &&
           saturation <= (blue > red ? kBlue : kAmber);
}

bool isOtherColour(const cv::Scalar& colour, const cv::Scalar& paper, int channels) {
    double least = 1e6;
    double highest = 0;
    for (int c = 0; c < channels; ++c) {
        const double ratio = colour[c] / std::max(paper[c], 1.0);
        least = std::min(least, ratio);
        highest = std::max(highest, ratio);
    }
    return highest - least > kOtherColour * highest || highest < kDarkGround;
}

// A region on which everything else is printed, also the palest.
const Region* aroundEverything(const Cells& cells, const Region& main) {
    const auto largest = std::max_element(
        cells.regions.begin(), cells.regions.end(),
        [](const Region& one, const Region& other) { return one.area < other.area; });
    const cv::Size page = cells.labels.size();
    const bool spans = largest->box.width > kSpans * page.width &&
                       largest->box.height > kSpans * page.height &&
                       largest->area > kGround * page.area();
    return spans && largest->area > kRatherSheet * main.area &&
                   isOtherColour(colourOf(*largest, cells), colourOf(main, cells),
                                 cells.colour.channels())
               ? &*largest
               : &main;
}

// What the page's brightest cells show in their brightest channel.
double whiteLevel(const Cells& cells) {
    std::vector<float> levels;
    const int channels = cells.colour.channels();
    for (int y = 0; y < cells.colour.rows; ++y) {
        const auto* cell = cells.colour.ptr<float>(y);
        for (int x = 0; x < cells.colour.cols; ++x, cell += channels) {
            levels.push_back(*std::max_element(cell, cell + channels));
        }
    }
    const auto place = levels.begin() + static_cast<std::ptrdiff_t>(
                                            kBrightest * static_cast<double>(levels.size() - 1));
    std::nth_element(levels.begin(), place, levels.end());
    return std::max<double>(*place, kLeastWhite);
}

} // namespace

Ground groundOf(const Cells& cells, const Region& main) {
    Ground ground{aroundEverything(cells, main)};
    const cv::Scalar colour = colourOf(*ground.region, cells);
    const int channels = cells.colour.channels();
    ground.white = ground.region == &main && (channels == 1 || isLampCast(colour));
    if (!ground.white) {
        const double white = whiteLevel(cells);
        for (int c = 0; c < channels; ++c) {
            ground.colour[c] = std::clamp(colour[c] / white * kPalest, 0.01, 1.0);
        }
    }
    return ground;
}

} // namespace doccam::page

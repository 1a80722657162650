// Filling what a page shows of the desk outside of a sheet's rounded corners.
#include "page/rim/rounded_corners.h"

#include <algorithm>
#include <vector>

namespace doccam::page {

namespace {

constexpr double kLargest = 0.09;  // radius, of the page's shorter side
constexpr int kSmallest = 3;       // radius in pixels
constexpr int kUneven = 2;         // pixels by which the outline may go outward again
constexpr double kLeastArea = 0.1; // of the square around the corner; of a quarter circle 0.21
constexpr double kMostArea = 0.62; // of a cut corner 0.5

// The depth of the desk at each pixel along the border, away from the corner.
std::vector<int> profile(const PaperPage& page, const Border& border, bool atEnd, int largest) {
    std::vector<int> depths;
    for (int i = 0; i < largest; ++i) {
        const int along = atEnd ? border.length - 1 - i : i;
        depths.push_back(depthAt(page, border, along, largest));
        if (depths.back() == 0) {
            break;
        }
    }
    return depths;
}

// Whether the desk gets ever narrower until the sheet meets the border, as deep as it is wide.
bool isRounded(const std::vector<int>& depths, int largest) {
    const auto width = static_cast<int>(depths.size()) - 1;
    if (width < kSmallest || depths.back() != 0) {
        return false;
    }
    int lowest = largest;
    double area = 0;
    for (const int depth : depths) {
        if (depth > lowest + kUneven) {
            return false;
        }
        lowest = std::min(lowest, depth);
        area += std::min(depth, width);
    }
    const double square = static_cast<double>(width) * width;
    return depths.front() * 2 > width && depths.front() < 2 * width + kSmallest &&
           area > kLeastArea * square && area < kMostArea * square;
}

void fillCorner(PaperPage& page, const Border& border, bool atEnd) {
    const int largest = static_cast<int>(kLargest * std::min(border.length, border.across));
    const std::vector<int> depths = profile(page, border, atEnd, largest);
    if (!isRounded(depths, largest)) {
        return;
    }
    for (int i = 0; i < static_cast<int>(depths.size()); ++i) {
        fillInward(page, border, atEnd ? border.length - 1 - i : i,
                   depths[static_cast<std::size_t>(i)]);
    }
}

} // namespace

void fillRoundedCorners(PaperPage& page) {
    for (const bool far : {false, true}) {
        const Border border = borderOf(page.pixels, true, far);
        fillCorner(page, border, false);
        fillCorner(page, border, true);
    }
}

} // namespace doccam::page

// Printed areas of one colour, through which the light on a page can be seen.
#include "page/paper/flat_fills.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace doccam::page {

namespace {

constexpr int kReach = 5;           // cells from a fill to the paper around
constexpr int kSmallestFill = 60;   // cells
constexpr double kSurrounded = 0.6; // of a fill's outline lies beside paper
constexpr double kSpread = 0.025;   // of its colour in the light of that paper
constexpr double kShadow = 0.08;    // how much the light has to vary

using Colour = std::array<double, 3>;

// A fill's cells which lie beside paper, as if in even light.
struct Rim {
    std::vector<Colour> print; // the colour divided by the light
    double darkest = 1e6;      // light
    double brightest = 0;
};

Rim rimOf(const cv::Mat& rim, const cv::Mat& colour, const cv::Mat& light) {
    Rim found;
    const int channels = colour.channels();
    std::vector<cv::Point> points;
    cv::findNonZero(rim, points);
    for (const cv::Point point : points) {
        const auto* seen = colour.ptr<float>(point.y, point.x);
        const auto* lit = light.ptr<float>(point.y, point.x);
        Colour print{};
        double sum = 0;
        for (int c = 0; c < channels; ++c) {
            print[c] = seen[c] / std::max(lit[c], 1.0F);
            sum += lit[c];
        }
        found.print.push_back(print);
        found.darkest = std::min(found.darkest, sum);
        found.brightest = std::max(found.brightest, sum);
    }
    return found;
}

// The rim's one colour, or nothing but zeros if it has several.
Colour oneColour(const Rim& rim, int channels) {
    const auto count = static_cast<double>(rim.print.size());
    Colour mean{};
    for (int c = 0; c < channels; ++c) {
        for (const Colour& print : rim.print) {
            mean[c] += print[c] / count;
        }
        double deviation = 0;
        for (const Colour& print : rim.print) {
            deviation += std::abs(print[c] - mean[c]) / count;
        }
        if (deviation > kSpread * mean[c]) {
            return {};
        }
    }
    return mean;
}

// Fills are seen with as much of the page around as their paper lies in.
cv::Rect around(const cv::Rect& box, cv::Size page) {
    return cv::Rect(box.x - kReach, box.y - kReach, box.width + 2 * kReach,
                    box.height + 2 * kReach) &
           cv::Rect({}, page);
}

bool addFill(const Region& region, const Cells& cells, const cv::Mat& light, cv::Mat& colour,
             const cv::Mat& paper, cv::Mat& known) {
    const cv::Rect box = around(region.box, cells.labels.size());
    const cv::Mat inside = cells.labels(box) == region.label;
    cv::Mat core;
    cv::erode(inside, core, {}, {-1, -1}, 1, cv::BORDER_CONSTANT, cv::Scalar::all(0));
    cv::Mat beside;
    cv::dilate(paper(box), beside,
               cv::getStructuringElement(cv::MORPH_RECT, {2 * kReach + 1, 2 * kReach + 1}));
    const cv::Mat outline = inside & ~core;
    const cv::Mat seenRim = outline & beside;
    if (cv::countNonZero(seenRim) < kSurrounded * cv::countNonZero(outline)) {
        return false;
    }
    const Rim rim = rimOf(seenRim, cells.colour(box), light(box));
    const Colour print = oneColour(rim, colour.channels());
    if (print[0] <= 0 || rim.darkest > (1 - kShadow) * rim.brightest) {
        return false;
    }
    cv::Mat implied;
    cv::divide(cells.colour(box), cv::Scalar(print[0], print[1], print[2]), implied);
    implied.copyTo(colour(box), inside);
    known(box).setTo(255, inside);
    return true;
}

} // namespace

bool addFlatFills(const Cells& cells, const cv::Mat& light, cv::Mat& colour, cv::Mat& known) {
    const cv::Mat paper = known.clone();
    bool added = false;
    for (const Region& region : cells.regions) {
        if (region.area >= kSmallestFill &&
            cv::countNonZero(paper(region.box) & (cells.labels(region.box) == region.label)) == 0) {
            added |= addFill(region, cells, light, colour, paper, known);
        }
    }
    return added;
}

} // namespace doccam::page

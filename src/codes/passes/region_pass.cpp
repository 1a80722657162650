#include "codes/passes/region_pass.h"

#include "codes/corners.h"
#include "codes/passes/aligned_bars.h"
#include "codes/passes/upright_part.h"
#include "codes/readers/reader.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <span>

namespace doccam::codes {
namespace {

constexpr double kAround = 1.5; // of the place's size

// The angle of most edges, in radians, in which all quarter turns are alike.
double edgeAngle(cv::Mat part) {
    constexpr double kEnough = 1e6; // pixels
    if (static_cast<double>(part.total()) > kEnough) {
        const double scale = std::sqrt(kEnough / static_cast<double>(part.total()));
        cv::resize(part, part, cv::Size(), scale, scale, cv::INTER_AREA);
    }
    cv::Mat dx;
    cv::Mat dy;
    cv::Sobel(part, dx, CV_32F, 1, 0);
    cv::Sobel(part, dy, CV_32F, 0, 1);
    double cosine = 0;
    double sine = 0;
    for (int y = 0; y < part.rows; ++y) {
        for (int x = 0; x < part.cols; ++x) {
            const double a = dx.at<float>(y, x);
            const double b = dy.at<float>(y, x);
            const double strength = a * a + b * b;
            if (strength > 0) {
                // Of four times the angle, weighted by the strength.
                cosine += (a * a * a * a - 6 * a * a * b * b + b * b * b * b) / strength;
                sine += 4 * a * b * (a * a - b * b) / strength;
            }
        }
    }
    return std::atan2(sine, cosine) / 4;
}

cv::Rect partOf(const cv::Mat& grey, const Corners& place) {
    const cv::Rect2d bounds = boundsOf(place);
    const cv::Rect whole(0, 0, grey.cols, grey.rows);
    return cv::Rect(cvFloor(bounds.x), cvFloor(bounds.y), cvCeil(bounds.width) + 1,
                    cvCeil(bounds.height) + 1) &
           whole;
}

cv::Mat sharpened(const cv::Mat& grey, double scale) {
    cv::Mat blurred;
    cv::GaussianBlur(grey, blurred, cv::Size(), 1.2 * scale);
    cv::Mat sharp;
    cv::addWeighted(grey, 2.5, blurred, -1.5, 0, sharp);
    return sharp;
}

struct Way {
    double scale;
    Threshold threshold;
    bool sharp;
    bool inverted;
};

constexpr Way kWays[kAllWays] = {
    {1, Threshold::kLocal, false, false}, {2, Threshold::kLocal, false, false},
    {3, Threshold::kLocal, false, false}, {2, Threshold::kGlobal, false, false},
    {3, Threshold::kLocal, true, false},  {3, Threshold::kGlobal, true, false},
    {1, Threshold::kLocal, false, true},  {4, Threshold::kGlobal, true, false},
};

Sightings readPart(const UprightPart& part, SymbologySet wanted, Threshold threshold) {
    ReadingMode mode;
    mode.threshold = threshold;
    Sightings found = readWithZxing(part.grey, wanted, mode);
    if (found.empty() && contains(wanted, Symbology::kQr)) {
        found = readWithZbar(part.grey, wanted & asSet(Symbology::kQr));
    }
    for (Sighting& seen : found) {
        seen.corners = part.inPicture(seen.corners);
    }
    return found;
}

Sightings readMatrix(const cv::Mat& grey, const Corners& place, SymbologySet wanted,
                     std::size_t ways, const Deadline& deadline) {
    const cv::Rect around = partOf(grey, place);
    if (around.area() < 64 || (wanted & kEveryMatrix) == 0) {
        return {};
    }
    const double angle = edgeAngle(grey(around));
    for (const Way& way : std::span(kWays).first(std::min(ways, kAllWays))) {
        if (deadline.isOver()) {
            return {};
        }
        UprightPart part = uprightPart(grey, place, angle, {.around = kAround, .scale = way.scale});
        if (way.sharp) {
            part.grey = sharpened(part.grey, way.scale);
        }
        if (way.inverted) {
            cv::bitwise_not(part.grey, part.grey);
        }
        Sightings found = readPart(part, wanted & kEveryMatrix, way.threshold);
        if (!found.empty()) {
            return found;
        }
    }
    return {};
}

Corners longSideFirst(const Corners& place) {
    const bool upright = cv::norm(place[1] - place[0]) >= cv::norm(place[3] - place[0]);
    return upright ? place : Corners{place[1], place[2], place[3], place[0]};
}

} // namespace

Sightings readRegion(const cv::Mat& grey, const LikelyCode& likely, SymbologySet wanted,
                     std::size_t ways, const Deadline& deadline) {
    const StripWays strips = ways == kAllWays ? StripWays::kAll : StripWays::kOne;
    // The bars of a PDF417 prevail over its rows, and short bars may look like a matrix.
    Sightings found = likely.bars ? readAcrossBars(grey, likely.place, wanted, strips)
                                  : readMatrix(grey, likely.place, wanted, ways, deadline);
    if (found.empty() && !deadline.isOver()) {
        found = likely.bars ? readMatrix(grey, likely.place, wanted & asSet(Symbology::kPdf417),
                                         ways, deadline)
                            : readAcrossBars(grey, longSideFirst(likely.place), wanted, strips);
    }
    return found;
}

} // namespace doccam::codes

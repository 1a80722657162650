#include "codes/passes/region_pass.h"

#include "codes/corners.h"
#include "codes/passes/aligned_bars.h"
#include "codes/readers/reader.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <span>

namespace doccam::codes {
namespace {

constexpr double kLargestSide = 1200; // pixels of a turned and enlarged part

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

// A part of a picture, turned upright and enlarged.
struct Part {
    cv::Mat grey;
    cv::Matx23d back; // from its pixels to the picture's

    Corners inPicture(const Corners& corners) const {
        Corners result;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            result[i] = {back(0, 0) * corners[i].x + back(0, 1) * corners[i].y + back(0, 2),
                         back(1, 0) * corners[i].x + back(1, 1) * corners[i].y + back(1, 2)};
        }
        return result;
    }
};

cv::Rect partOf(const cv::Mat& grey, const Corners& place) {
    const cv::Rect2d bounds = boundsOf(place);
    const cv::Rect whole(0, 0, grey.cols, grey.rows);
    return cv::Rect(cvFloor(bounds.x), cvFloor(bounds.y), cvCeil(bounds.width) + 1,
                    cvCeil(bounds.height) + 1) &
           whole;
}

// The place with a quarter of its size around it.
Part uprightPart(const cv::Mat& grey, const Corners& place, double angle, double scale) {
    constexpr double kAround = 1.5;
    const cv::Point2d right(std::cos(angle), std::sin(angle));
    const cv::Point2d down(-right.y, right.x);
    const cv::Point2d middle = middleOf(place);
    double width = 0;
    double height = 0;
    for (const cv::Point2d corner : place) {
        width = std::max(width, std::abs((corner - middle).dot(right)) * 2 * kAround);
        height = std::max(height, std::abs((corner - middle).dot(down)) * 2 * kAround);
    }
    const double fitting = std::min(scale, kLargestSide / std::max(width, height));
    const cv::Point2d origin = middle - right * (width / 2) - down * (height / 2);
    Part part;
    part.back = {right.x / fitting, down.x / fitting, origin.x,
                 right.y / fitting, down.y / fitting, origin.y};
    const cv::Size size(std::max(cvRound(width * fitting), 8),
                        std::max(cvRound(height * fitting), 8));
    cv::warpAffine(grey, part.grey, part.back, size, cv::INTER_CUBIC | cv::WARP_INVERSE_MAP,
                   cv::BORDER_REPLICATE);
    return part;
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

Sightings readPart(const Part& part, SymbologySet wanted, Threshold threshold) {
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
        Part part = uprightPart(grey, place, angle, way.scale);
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
    // The bars of a PDF417 prevail over its rows, and short bars may look like a matrix.
    Sightings found = likely.bars ? readAcrossBars(grey, likely.place, wanted)
                                  : readMatrix(grey, likely.place, wanted, ways, deadline);
    if (found.empty() && !deadline.isOver()) {
        found = likely.bars ? readMatrix(grey, likely.place, wanted & asSet(Symbology::kPdf417),
                                         ways, deadline)
                            : readAcrossBars(grey, longSideFirst(likely.place), wanted);
    }
    return found;
}

} // namespace doccam::codes

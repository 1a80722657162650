#include "codes/passes/separate_codes.h"

#include "codes/corners.h"
#include "codes/passes/upright_part.h"
#include "codes/readers/reader.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::codes {
namespace {

constexpr double kAround = 2.2; // of the place's size, which may be of parts of two codes

// The direction of most edges around the place, in radians.
double acrossBars(const cv::Mat& grey, const Corners& place) {
    const cv::Rect2d bounds = boundsOf(place);
    const cv::Mat part = grey(cv::Rect(bounds) & cv::Rect(0, 0, grey.cols, grey.rows));
    if (part.empty()) {
        return 0;
    }
    cv::Mat dx;
    cv::Mat dy;
    cv::Sobel(part, dx, CV_32F, 1, 0);
    cv::Sobel(part, dy, CV_32F, 0, 1);
    return 0.5 * std::atan2(2 * dx.dot(dy), dx.dot(dx) - dy.dot(dy));
}

// The place of a stacked code may be as narrow as the first of its rows' pairs of characters.
Corners squareAround(const Corners& place) {
    const cv::Rect2d bounds = boundsOf(place);
    const double half = std::max(bounds.width, bounds.height) / 2;
    const cv::Point2d middle = middleOf(place);
    return {middle + cv::Point2d(-half, -half), middle + cv::Point2d(half, -half),
            middle + cv::Point2d(half, half), middle + cv::Point2d(-half, half)};
}

cv::Mat inkOf(const cv::Mat& grey) {
    const int window = std::max(std::min(grey.cols, grey.rows) / 4, 15) | 1;
    cv::Mat ink;
    cv::adaptiveThreshold(grey, ink, 255, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY_INV, window,
                          12);
    return ink;
}

// The mean width of what is dark in a row of the place itself, which in a DataBar is about two
// modules.
double runOf(const cv::Mat& ink) {
    const cv::Size size(cvRound(ink.cols / kAround), cvRound(ink.rows / kAround));
    const cv::Mat place =
        ink(cv::Rect({(ink.cols - size.width) / 2, (ink.rows - size.height) / 2}, size));
    int starts = 0;
    for (int y = 0; y < place.rows; ++y) {
        const unsigned char* const row = place.ptr(y);
        for (int x = 1; x < place.cols; ++x) {
            starts += row[x] != 0 && row[x - 1] == 0 ? 1 : 0;
        }
    }
    return starts > 0 ? static_cast<double>(cv::countNonZero(place)) / starts : 0;
}

// Joins what is not farther apart than the widest bars of one code, nor higher than a row's gap.
cv::Mat joined(const cv::Mat& ink, double run) {
    constexpr double kAcross = 5; // runs
    constexpr double kDown = 1;
    const cv::Size reach(2 * cvCeil(run * kAcross / 2) + 1, 2 * cvCeil(run * kDown / 2) + 1);
    cv::Mat pieces;
    cv::morphologyEx(ink, pieces, cv::MORPH_CLOSE,
                     cv::getStructuringElement(cv::MORPH_RECT, reach));
    return pieces;
}

// The piece on paper.
cv::Mat alone(const cv::Mat& grey, const cv::Mat& piece, cv::Rect bounds, int rim) {
    cv::Mat mask;
    cv::dilate(piece(bounds), mask, cv::getStructuringElement(cv::MORPH_RECT, {3, 3}));
    const double paper = cv::mean(grey, piece == 0)[0];
    cv::Mat page(bounds.height + 2 * rim, bounds.width + 2 * rim, CV_8U, cv::Scalar::all(paper));
    grey(bounds).copyTo(page(cv::Rect({rim, rim}, bounds.size())), mask);
    return page;
}

Sightings readPiece(const UprightPart& part, const cv::Mat& piece, cv::Rect bounds, int rim) {
    constexpr SymbologySet kWanted = asSet(Symbology::kDataBarExpanded);
    const cv::Mat page = alone(part.grey, piece, bounds, rim);
    Sightings found = readWithZxing(page, kWanted);
    if (found.empty()) {
        found = readWithZbar(page, kWanted);
    }
    const cv::Point2d shift = cv::Point2d(bounds.tl()) - cv::Point2d(rim, rim);
    for (Sighting& seen : found) {
        for (cv::Point2d& corner : seen.corners) {
            corner += shift;
        }
        seen.corners = part.inPicture(seen.corners);
        seen.aligned = true;
    }
    return found;
}

Sightings readPieces(const UprightPart& part) {
    constexpr double kNarrowest = 24; // runs: half of a row
    constexpr double kFlattest = 3;
    const cv::Mat ink = inkOf(part.grey);
    const double run = runOf(ink);
    cv::Mat labels;
    cv::Mat stats;
    cv::Mat middles;
    const int count =
        run > 0 ? cv::connectedComponentsWithStats(joined(ink, run), labels, stats, middles) : 0;
    Sightings found;
    for (int label = 1; label < count; ++label) {
        const cv::Rect bounds(
            stats.at<int>(label, cv::CC_STAT_LEFT), stats.at<int>(label, cv::CC_STAT_TOP),
            stats.at<int>(label, cv::CC_STAT_WIDTH), stats.at<int>(label, cv::CC_STAT_HEIGHT));
        if (bounds.width > kNarrowest * run && bounds.height > kFlattest * run) {
            const Sightings seen =
                readPiece(part, labels == label, bounds, std::max(cvCeil(run * 5), 8));
            found.insert(found.end(), seen.begin(), seen.end());
        }
    }
    return found;
}

} // namespace

Sightings readPiecesApart(const cv::Mat& grey, const Corners& place) {
    const double angle = acrossBars(grey, place);
    Sightings found;
    for (const double scale : {1.0, 2.0}) {
        if (found.empty()) {
            found = readPieces(
                uprightPart(grey, squareAround(place), angle, {.around = kAround, .scale = scale}));
        }
    }
    return found;
}

} // namespace doccam::codes

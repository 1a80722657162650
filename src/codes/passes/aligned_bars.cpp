#include "codes/passes/aligned_bars.h"

#include "codes/bar_place.h"
#include "codes/readers/reader.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <utility>

namespace doccam::codes {
namespace {

constexpr int kBands = 5;         // averages of parts of the bars' height
constexpr int kRowsPerBand = 6;   // in the strip
constexpr double kWanted = 1000;  // pixels across the bars
constexpr double kLongest = 4000; // pixels of a strip

// A strip of a picture across bars, upright, and the way back.
struct Strip {
    cv::Mat grey;
    cv::Mat plain;      // neither averaged nor evened out
    cv::Point2d origin; // of the strip's left upper corner in the picture
    cv::Point2d right;  // in the picture, for a pixel in the strip
    cv::Point2d down;

    cv::Point2d inPicture(cv::Point2d place) const {
        return origin + right * place.x + down * place.y;
    }
};

// The bars' height, a row per pixel, and what is beside them.
cv::Mat straightened(const cv::Mat& grey, const Strip& strip, cv::Size size, cv::Point2d down) {
    const cv::Matx23d back(strip.right.x, down.x, strip.origin.x, strip.right.y, down.y,
                           strip.origin.y);
    cv::Mat straight;
    cv::warpAffine(grey, straight, back, size, cv::INTER_CUBIC | cv::WARP_INVERSE_MAP,
                   cv::BORDER_REPLICATE);
    return straight;
}

// Averages of parts of the height, repeated so that several scan lines cross each; that of all of
// it is in the middle, where zxing begins.
cv::Mat banded(const cv::Mat& straight) {
    cv::Mat bands(kBands * kRowsPerBand, straight.cols, CV_8UC1);
    for (int band = 0; band < kBands; ++band) {
        const int parts = kBands - 1;
        const int part = band < kBands / 2 ? band : band - 1;
        const cv::Range rows = band == kBands / 2
                                   ? cv::Range(0, straight.rows)
                                   : cv::Range(straight.rows * part / parts,
                                               std::max(straight.rows * (part + 1) / parts,
                                                        straight.rows * part / parts + 1));
        cv::Mat mean;
        cv::reduce(straight.rowRange(rows), mean, 0, cv::REDUCE_AVG, CV_8U);
        cv::repeat(mean, kRowsPerBand, 1,
                   bands.rowRange(band * kRowsPerBand, (band + 1) * kRowsPerBand));
    }
    return bands;
}

// The one of the whole height.
cv::Mat middleBand(const cv::Mat& bands) {
    return bands.rowRange(kRowsPerBand * (kBands / 2), kRowsPerBand * (kBands / 2 + 1));
}

// Paper as light everywhere as it is where it is lightest.
void evenOut(cv::Mat& bands, int window) {
    cv::Mat paper;
    cv::dilate(bands, paper, cv::getStructuringElement(cv::MORPH_RECT, {2 * window + 1, 1}));
    cv::blur(paper, paper, {2 * window + 1, 1});
    cv::divide(bands, paper, bands, 235);
}

struct StripSize {
    double before = 0; // of the bars' width
    double after = 0;
    double slope = 0;    // of the line of reading against the perpendicular on the bars
    double height = 0.8; // of the bars' height
    double maximumScale = 4;
    bool averaged = true;
};

Strip stripAcross(const cv::Mat& grey, const Corners& bars, StripSize wanted) {
    const cv::Point2d down = alongOf(bars);
    const cv::Point2d across(down.y, -down.x);
    const cv::Point2d unit = across + down * wanted.slope;
    const cv::Point2d along = (bars[1] - bars[0] + bars[2] - bars[3]) / 2;
    const double width = std::max(along.dot(across), 1.0);
    const double height = std::clamp(
        ((bars[3] - bars[0] + bars[2] - bars[1]) / 2).dot(down) * wanted.height, 4.0, 200.0);
    const cv::Point2d middle = (bars[0] + bars[1] + bars[2] + bars[3]) / 4;
    const double scale = std::clamp(kWanted / width, 1.0, wanted.maximumScale);
    const double length = std::min(width * (1 + wanted.before + wanted.after) * scale, kLongest);
    Strip strip;
    strip.right = unit / scale;
    strip.origin = middle - unit * (width * (0.5 + wanted.before)) - down * (height / 2);
    const int rows = std::max(static_cast<int>(height), kBands - 1);
    strip.plain =
        straightened(grey, strip, cv::Size(std::max(static_cast<int>(length), 16), rows), down);
    strip.grey = banded(strip.plain);
    evenOut(strip.grey, std::max(static_cast<int>(width * scale / 12), 2));
    strip.down = down * (height / strip.grey.rows);
    return strip;
}

constexpr double kGap = 0.006; // between bars and quiet zone, of the width
constexpr double kZone = 0.04; // of quiet zone that must be there

// Whether there is paper where a quiet zone must be, from left to right across the strip.
bool isPaper(const cv::Mat& bands, double left, double right, double ink) {
    const int from = cvRound(left);
    const int to = std::max(cvRound(right), from + 1);
    if (from < 0 || to > bands.cols) {
        return false; // who knows
    }
    const cv::Mat middle = middleBand(bands).colRange(from, to);
    double darkest = 0;
    cv::minMaxLoc(middle, &darkest);
    return darkest > ink;
}

bool isInside(cv::Size picture, cv::Point2d place) {
    return place.x >= 0 && place.y >= 0 && place.x < picture.width && place.y < picture.height;
}

// Whether the bars from left to right have paper on both sides, and are no part of others, which
// may have been cut off by the picture's border.
bool isWhole(const Strip& strip, double left, double right, cv::Size picture) {
    const cv::Mat middle = middleBand(strip.grey);
    const double width = right - left;
    const auto from = static_cast<int>(std::clamp(left, 0.0, middle.cols - 1.0));
    const auto to = static_cast<int>(std::clamp(right, from + 1.0, double{1} * middle.cols));
    double darkest = 0;
    double lightest = 0;
    cv::minMaxLoc(middle.colRange(from, to), &darkest, &lightest);
    const double ink = lightest - 0.4 * (lightest - darkest);
    const double near = width * kGap + 2;
    const double far = near + width * kZone;
    const double row = strip.grey.rows / 2.0;
    return isInside(picture, strip.inPicture({left - far, row})) &&
           isInside(picture, strip.inPicture({right + far, row})) &&
           isPaper(strip.grey, left - far, left - near, ink) &&
           isPaper(strip.grey, right + near, right + far, ink);
}

void toPicture(Sightings& found, const Strip& strip, const Corners& bars, cv::Size picture) {
    const cv::Point2d up = (bars[0] - bars[3] + bars[1] - bars[2]) / 4;
    for (Sighting& seen : found) {
        const double row = strip.grey.rows / 2.0;
        const double left = (seen.corners[0].x + seen.corners[3].x) / 2;
        const double right = (seen.corners[1].x + seen.corners[2].x) / 2;
        const cv::Point2d start = strip.inPicture({left, row});
        const cv::Point2d end = strip.inPicture({right, row});
        // Read upside down, the code's own top is below.
        const cv::Point2d way = left <= right ? up : -up;
        seen.corners = {start + way, end + way, end - way, start - way};
        seen.aligned = isWhole(strip, std::min(left, right), std::max(left, right), picture);
    }
}

constexpr ReadingMode kStripMode{.effort = Effort::kUpright};

} // namespace

namespace {

Sightings readStrip(const cv::Mat& grey, const Corners& bars, SymbologySet wanted, StripSize size,
                    Effort effort) {
    const Strip strip = stripAcross(grey, bars, size);
    const cv::Mat& picture = size.averaged ? strip.grey : strip.plain;
    Sightings found = readWithZxing(picture, wanted & kEveryLinear, {.effort = effort});
    const Sightings others = readWithZbar(picture, wanted & kEveryLinear);
    found.insert(found.end(), others.begin(), others.end());
    toPicture(found, strip, bars, grey.size());
    return found;
}

} // namespace

Sightings readAcrossBars(const cv::Mat& grey, const Corners& bars, SymbologySet wanted,
                         StripWays ways) {
    if ((wanted & kEveryLinear) == 0) {
        return {};
    }
    // Of the width, since what was read may be a part.
    constexpr double kBeside = 1.3;
    const std::pair<StripSize, Effort> kinds[] = {
        {{.before = kBeside, .after = kBeside}, Effort::kUpright},
        // Blurred bars are rather read reduced.
        {{.before = kBeside, .after = kBeside, .maximumScale = 1, .averaged = false},
         Effort::kFull},
        // Bars seen from aside diverge.
        {{.before = kBeside, .after = kBeside, .height = 0.15}, Effort::kUpright},
    };
    Sightings found;
    for (const auto& [size, effort] : kinds) {
        const Sightings more = readStrip(grey, bars, wanted, size, effort);
        found.insert(found.end(), more.begin(), more.end());
        if (ways == StripWays::kOne ||
            std::any_of(more.begin(), more.end(),
                        [](const Sighting& seen) { return seen.aligned; })) {
            break;
        }
    }
    return found;
}

bool standsAlone(const cv::Mat& grey, const Corners& bars) {
    constexpr double kBeside = 0.25;
    constexpr double kNarrowest = 24; // pixels
    if (cv::norm(bars[1] - bars[0]) < kNarrowest) {
        return false;
    }
    const Strip strip = stripAcross(grey, bars, {.before = kBeside, .after = kBeside});
    const double whole = strip.grey.cols / (1 + 2 * kBeside);
    return isWhole(strip, whole * kBeside, whole * (1 + kBeside), grey.size());
}

namespace {

// Whether there is any ink where an add-on begins.
bool hasInkBeside(const Strip& strip, StripSize size) {
    const double width = strip.grey.cols / (1 + size.before + size.after);
    const cv::Mat middle = middleBand(strip.grey);
    const auto column = [&](double place) {
        return std::clamp(cvRound(width * (size.before + place)), 0, middle.cols);
    };
    double darkest = 0;
    double lightest = 0;
    cv::minMaxLoc(middle, &darkest, &lightest);
    double beside = 0;
    cv::minMaxLoc(middle.colRange(column(1.05), column(1.4)), &beside);
    return beside < lightest - 0.12 * (lightest - darkest);
}

} // namespace

std::string addonBeside(const cv::Mat& grey, const Sighting& code) {
    constexpr double kBefore = 0.15;
    constexpr double kAfter = 0.8;
    ReadingMode mode = kStripMode;
    mode.addonsRequired = true;
    mode.lines = kRowsPerBand + 1; // in two bands
    std::string addon;
    // Seen from aside, it is not straight beside the bars.
    for (const double slope : {0.0, -0.15, 0.15, -0.3, 0.3}) {
        const StripSize size{.before = kBefore, .after = kAfter, .slope = slope};
        const Strip strip = stripAcross(grey, code.corners, size);
        if (slope == 0 && !hasInkBeside(strip, size)) {
            return {};
        }
        for (const Sighting& seen : readWithZxing(strip.grey, kEveryRetail, mode)) {
            if (seen.text == code.text && seen.addon.size() > addon.size()) {
                addon = seen.addon;
            }
        }
    }
    return addon;
}

} // namespace doccam::codes

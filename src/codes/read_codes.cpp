#include "codes/read_codes.h"

#include "codes/corners.h"
#include "codes/joined_readings.h"
#include "codes/passes/aligned_bars.h"
#include "codes/passes/deadline.h"
#include "codes/passes/likely_codes.h"
#include "codes/passes/region_pass.h"
#include "codes/readers/reader.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace doccam::codes {
namespace {

// Of pictures with more pixels than any camera's the first pass reads a reduced copy, so that its
// time and memory stay bounded; the others read parts of the picture itself.
constexpr double kLargestPicture = 24e6;

Sightings firstPass(const cv::Mat& grey, SymbologySet wanted) {
    const double scale =
        std::min(1.0, std::sqrt(kLargestPicture / static_cast<double>(grey.total())));
    cv::Mat reduced = grey;
    if (scale < 1) {
        cv::resize(grey, reduced, cv::Size(), scale, scale, cv::INTER_AREA);
    }
    Sightings found = readWithZxing(reduced, wanted);
    Sightings others = readWithZbar(reduced, wanted);
    std::move(others.begin(), others.end(), std::back_inserter(found));
    for (Sighting& seen : found) {
        for (cv::Point2d& corner : seen.corners) {
            corner /= scale;
        }
    }
    return found;
}

bool hasPlace(const Joined& joined) {
    return boundsOf(joined.code.corners).area() > 0;
}

// Reads linear codes that are doubtful or of uncertain place again, straight across their bars.
void confirm(const cv::Mat& grey, JoinedReadings& readings, SymbologySet wanted) {
    Sightings again;
    for (Joined& joined : readings.all()) {
        if (isUnchecked(joined.code.symbology) && hasPlace(joined)) {
            joined.alone = standsAlone(grey, joined.code.corners);
        }
        if (isLinear(joined.code.symbology) && hasPlace(joined) &&
            (!isSure(joined) || !joined.zxingPlaced)) {
            const Sightings seen = readAcrossBars(grey, joined.code.corners, wanted);
            again.insert(again.end(), seen.begin(), seen.end());
        }
    }
    readings.add(again);
}

void addAddons(const cv::Mat& grey, JoinedReadings& readings) {
    for (Joined& joined : readings.all()) {
        if (isRetail(joined.code.symbology) && joined.code.addon.empty() && hasPlace(joined)) {
            joined.code.addon = addonBeside(grey, joined.code);
        }
    }
}

// Whether all was tried. Codes that are doubtful still look like codes.
bool tryRegions(const cv::Mat& grey, JoinedReadings& readings, SymbologySet wanted,
                const Deadline& deadline) {
    const auto places = likelyCodes(grey, readings.codes(kEverySymbology));
    for (const LikelyCode& likely : places) {
        if (deadline.isOver()) {
            return false;
        }
        if (!readings.hasRead(likely.place)) {
            readings.add(readRegion(grey, likely, wanted, deadline));
        }
    }
    return places.empty() || !deadline.isOver();
}

} // namespace

CodesRead readCodes(const cv::Mat& grey, SymbologySet wanted, double seconds) {
    const Deadline deadline(seconds);
    JoinedReadings readings;
    readings.add(firstPass(grey, wanted));
    confirm(grey, readings, wanted);
    const bool complete = tryRegions(grey, readings, wanted, deadline);
    addAddons(grey, readings);
    return {readings.codes(wanted), complete};
}

} // namespace doccam::codes

#include "codes/read_codes.h"

#include "base/shared_work.h"
#include "codes/corners.h"
#include "codes/joined_readings.h"
#include "codes/passes/aligned_bars.h"
#include "codes/passes/deadline.h"
#include "codes/passes/likely_codes.h"
#include "codes/passes/module_count.h"
#include "codes/passes/region_pass.h"
#include "codes/readers/reader.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <exception>
#include <iterator>
#include <span>
#include <vector>

namespace doccam::codes {
namespace {

// Of pictures with more pixels than any camera's the first pass reads a reduced copy, so that its
// time and memory stay bounded; the others read parts of the picture itself.
constexpr double kLargestPicture = 24e6;

// Both readers at once. The pool would turn exceptions into others.
Sightings readWithBoth(const cv::Mat& grey, SymbologySet wanted) {
    std::array<Sightings, 2> found;
    std::array<std::exception_ptr, 2> failures;
    shareWork(2, [&](const cv::Range& readers) {
        for (int reader = readers.start; reader < readers.end; ++reader) {
            const auto place = static_cast<std::size_t>(reader);
            try {
                found[place] =
                    reader == 0 ? readWithZxing(grey, wanted) : readWithZbar(grey, wanted);
            } catch (...) {
                failures[place] = std::current_exception();
            }
        }
    });
    for (const std::exception_ptr& failure : failures) {
        if (failure) {
            std::rethrow_exception(failure);
        }
    }
    std::move(found[1].begin(), found[1].end(), std::back_inserter(found[0]));
    return std::move(found[0]);
}

Sightings firstPass(const cv::Mat& grey, SymbologySet wanted) {
    const double scale =
        std::min(1.0, std::sqrt(kLargestPicture / static_cast<double>(grey.total())));
    cv::Mat reduced = grey;
    if (scale < 1) {
        cv::resize(grey, reduced, cv::Size(), scale, scale, cv::INTER_AREA);
    }
    Sightings found = readWithBoth(reduced, wanted);
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

// A picture may be made to show thousands.
std::span<Joined> firstOf(std::vector<Joined>& joined) {
    constexpr std::size_t kMaximum = 128;
    return std::span(joined).first(std::min(joined.size(), kMaximum));
}

// Reads linear codes that are doubtful or of uncertain place again, straight across their bars.
void confirm(const cv::Mat& grey, JoinedReadings& readings, SymbologySet wanted) {
    Sightings again;
    for (Joined& joined : firstOf(readings.all())) {
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
    for (Joined& joined : firstOf(readings.all())) {
        if (isRetail(joined.code.symbology) && joined.code.addon.empty() && hasPlace(joined)) {
            joined.code.addon = addonBeside(grey, joined.code);
        }
    }
}

// Whether all was tried. Codes that are doubtful still look like codes.
bool tryRegions(const cv::Mat& grey, JoinedReadings& readings, SymbologySet wanted,
                const Deadline& deadline) {
    auto places = likelyCodes(grey, readings.codes(kEverySymbology));
    places.erase(
        std::remove_if(places.begin(), places.end(),
                       [&](const LikelyCode& likely) { return !hasModules(grey, likely); }),
        places.end());
    // So many are rather a page of text.
    constexpr std::size_t kMany = 10;
    const std::size_t ways = places.size() > kMany ? kFewWays : kAllWays;
    for (const LikelyCode& likely : places) {
        if (deadline.isOver()) {
            return false;
        }
        if (!readings.hasRead(likely.place)) {
            readings.add(readRegion(grey, likely, wanted, ways, deadline));
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

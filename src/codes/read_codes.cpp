#include "codes/read_codes.h"

#include "base/shared_work.h"
#include "codes/corners.h"
#include "codes/joined_readings.h"
#include "codes/passes/aligned_bars.h"
#include "codes/passes/deadline.h"
#include "codes/passes/likely_codes.h"
#include "codes/passes/module_count.h"
#include "codes/passes/region_pass.h"
#include "codes/passes/separate_codes.h"
#include "codes/readers/reader.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
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

// What count readings have seen, on several threads at once. The pool would turn exceptions into
// others.
template <typename Read>
Sightings readAtOnce(std::size_t count, const Read& read) {
    std::vector<Sightings> found(count);
    std::vector<std::exception_ptr> failures(count);
    shareWork(static_cast<int>(count), [&](const cv::Range& range) {
        for (auto i = static_cast<std::size_t>(range.start);
             i < static_cast<std::size_t>(range.end); ++i) {
            try {
                found[i] = read(i);
            } catch (...) {
                failures[i] = std::current_exception();
            }
        }
    });
    Sightings all;
    for (std::size_t i = 0; i < count; ++i) {
        if (failures[i]) {
            std::rethrow_exception(failures[i]);
        }
        std::move(found[i].begin(), found[i].end(), std::back_inserter(all));
    }
    return all;
}

Sightings readWithBoth(const cv::Mat& grey, SymbologySet wanted) {
    return readAtOnce(2, [&](std::size_t reader) {
        return reader == 0 ? readWithZxing(grey, wanted) : readWithZbar(grey, wanted);
    });
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
        if (joined.code.symbology == Symbology::kDataBarExpanded && hasPlace(joined)) {
            const Sightings seen = readPiecesApart(grey, joined.code.corners);
            again.insert(again.end(), seen.begin(), seen.end());
        } else if (isLinear(joined.code.symbology) && hasPlace(joined) &&
                   (!isSure(joined) || !joined.zxingPlaced)) {
            const Sightings seen = readAcrossBars(grey, joined.code.corners, wanted);
            again.insert(again.end(), seen.begin(), seen.end());
        }
    }
    readings.add(again);
}

void addAddons(const cv::Mat& grey, JoinedReadings& readings) {
    for (Joined& joined : firstOf(readings.all())) {
        // The first digits of a longer one may have been taken for a short one.
        constexpr std::size_t kLong = 5;
        if (isRetail(joined.code.symbology) && joined.code.addon.size() < kLong &&
            hasPlace(joined)) {
            const std::string addon = addonBeside(grey, joined.code);
            joined.code.addon = addon.empty() ? joined.code.addon : addon;
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
    // A few at once, and as many on any machine, since what is read in one place is not tried
    // again.
    constexpr std::size_t kAtOnce = 4;
    for (std::size_t next = 0; next < places.size();) {
        if (deadline.isOver()) {
            return false;
        }
        std::vector<LikelyCode> open;
        for (; next < places.size() && open.size() < kAtOnce; ++next) {
            if (!readings.hasRead(places[next].place)) {
                open.push_back(places[next]);
            }
        }
        readings.add(readAtOnce(open.size(), [&](std::size_t i) {
            return readRegion(grey, open[i], wanted, ways, deadline);
        }));
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

#include "codes/read_codes.h"

#include "codes/corners.h"
#include "codes/joined_readings.h"
#include "codes/passes/aligned_bars.h"
#include "codes/readers/reader.h"

namespace doccam::codes {
namespace {

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

} // namespace

CodesRead readCodes(const cv::Mat& grey, SymbologySet wanted, double /*seconds*/) {
    JoinedReadings readings;
    readings.add(readWithZxing(grey, wanted));
    readings.add(readWithZbar(grey, wanted));
    confirm(grey, readings, wanted);
    addAddons(grey, readings);
    return {readings.codes(wanted), true};
}

} // namespace doccam::codes

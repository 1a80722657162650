#include "codes/read_codes.h"

#include "codes/joined_readings.h"
#include "codes/readers/reader.h"

namespace doccam::codes {

CodesRead readCodes(const cv::Mat& grey, SymbologySet wanted, double /*seconds*/) {
    JoinedReadings readings;
    readings.add(readWithZxing(grey, wanted));
    readings.add(readWithZbar(grey, wanted));
    return {readings.codes(wanted), true};
}

} // namespace doccam::codes

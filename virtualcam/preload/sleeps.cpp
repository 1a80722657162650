#include "preload/sleeps.h"

#include <unistd.h>

#include <array>
#include <cmath>
#include <mutex>

namespace doccam::virtualcam {

namespace {

// Maximum number of recorded sleeps; further ones are not recorded.
constexpr std::size_t kRecorded = 16384;

struct Record {
    std::mutex mutex;
    std::array<Sleep, kRecorded> sleeps{};
    std::size_t count = 0;
    double scale = 1.0;
};

constinit Record record;

} // namespace

timeval noteSleep(const timeval& asked) {
    const long microseconds = asked.tv_sec * 1000000 + asked.tv_usec;
    const std::lock_guard lock(record.mutex);
    if (record.count < kRecorded) {
        record.sleeps[record.count++] = {microseconds, gettid()};
    }
    if (record.scale == 1.0 || microseconds < 0) {
        return asked;
    }
    const long scaled = std::lround(static_cast<double>(microseconds) * record.scale);
    return {scaled / 1000000, scaled % 1000000};
}

std::vector<Sleep> recordedSleeps() {
    const std::lock_guard lock(record.mutex);
    return {record.sleeps.begin(), record.sleeps.begin() + static_cast<long>(record.count)};
}

void clearRecordedSleeps() {
    const std::lock_guard lock(record.mutex);
    record.count = 0;
}

void changeSleepScale(double scale) {
    const std::lock_guard lock(record.mutex);
    record.scale = scale;
}

} // namespace doccam::virtualcam

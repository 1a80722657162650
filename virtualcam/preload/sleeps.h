// Pure sleeps of the program: recorded, and as long as a test wants them.
#pragma once

#include "control.h"

#include <sys/time.h>

#include <vector>

namespace doccam::virtualcam {

// Records a sleep and returns how long it shall really last. Allocates nothing.
timeval noteSleep(const timeval& asked);

std::vector<Sleep> recordedSleeps();
void clearRecordedSleeps();
void changeSleepScale(double scale);

} // namespace doccam::virtualcam

// Recording and scaling the program's pure sleeps.
#pragma once

#include "control.h"

#include <sys/time.h>

#include <vector>

namespace doccam::virtualcam {

// Records a sleep and returns its scaled length. Does not allocate.
timeval noteSleep(const timeval& asked);

std::vector<Sleep> recordedSleeps();
void clearRecordedSleeps();
void changeSleepScale(double scale);

} // namespace doccam::virtualcam

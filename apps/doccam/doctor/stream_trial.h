// Trial streaming directly from the driver.
#pragma once

#include "host/interrupt.h"

#include <string>

namespace doccam::host {

// The result of streaming a few frames. step and error are empty if every request succeeded.
struct Trial {
    bool held = false;
    std::string capture; // "mjpeg 3264x2448"
    std::string step;    // the failed request, such as "VIDIOC_STREAMON"
    int error = 0;       // its errno
    int frames = 0;
    int shortFrames = 0;
    int framesWithoutJpeg = 0;
};

// Streams from the node at its largest size, in MJPEG if available, and checks the frames. Returns
// errno if it cannot be opened, otherwise 0. Throws Interruption when the process is asked to end.
int tryStream(const std::string& node, Trial& trial, const Interrupt& interrupt);

} // namespace doccam::host

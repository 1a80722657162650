// How fast frames arrive at the host's callback.
#pragma once

namespace demo {

// Registers the frame counter; once per process, before the first camera is opened.
void countFrames();

// Waits until count more frames have arrived and returns the frames per second between the first
// and the last of them; 0 when they do not arrive within the time that a slow camera needs.
double framesPerSecond(int count);

} // namespace demo

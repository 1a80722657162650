// Waiting without work.
#pragma once

namespace doccam {

// Waits for less than a second, by select() with a time-out alone.
void pauseFor(int milliseconds);

} // namespace doccam

// Taking one frame from the driver.
#pragma once

#include <linux/videodev2.h>

#include <span>

namespace doccam {

inline constexpr int kGrabFailed = -1;
inline constexpr int kGrabImpossibleBuffer = -100;

// What the driver answered when asked for a filled buffer.
struct DequeuedBuffer {
    v4l2_buffer record{};
    int error = 0; // errno, 0 when a buffer was filled
};

// Waits on descriptor until the driver has filled a buffer. Touches none of the library's state.
DequeuedBuffer dequeueBuffer(int descriptor);

// Why no further frame comes from descriptor after takeFrame returned result.
const char* failureReason(int result, int descriptor);

// Copies as much of the frame as fits into frame, stores the number of bytes in length, and gives
// the buffer back to the driver. 0, or one of the codes above after printing why.
int takeFrame(DequeuedBuffer dequeued, std::span<unsigned char> frame, int& length);

} // namespace doccam

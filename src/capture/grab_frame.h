// Taking one frame from the driver.
#pragma once

#include "faults/faults.h"
#include "state/parts.h"

#include <linux/videodev2.h>

#include <span>

namespace doccam {

inline constexpr int kGrabFailed = -1;
inline constexpr int kGrabImpossibleBuffer = -100;

// The result of a dequeue.
struct DequeuedBuffer {
    v4l2_buffer record{};
    int error = 0; // errno, 0 when a buffer was filled
};

// Whether dequeueBuffer() would return at once.
bool hasFilledBuffer(int descriptor);

// Waits on descriptor until the driver has filled a buffer. Touches none of the library's state.
DequeuedBuffer dequeueBuffer(int descriptor);

// The outcome of one attempt to take a frame.
struct GrabbedFrame {
    enum class Failure { kNone, kDequeue, kBufferIndex, kRequeue };

    Failure failure = Failure::kNone;
    int detail = 0; // errno, or the impossible index
    int length = 0; // bytes copied
    int filled = 0; // of these, what the driver says it has filled; 0 if not all were copied
};

// Copies as much as fits into frame and requeues the buffer.
GrabbedFrame takeFrame(const record::Session& session, DequeuedBuffer dequeued,
                       std::span<unsigned char> frame);

// Returns 0, or prints the failure and returns one of the codes above.
int logGrabFailure(const GrabbedFrame& grabbed);

// Takes a frame into buffer, which has room for one, and returns as logGrabFailure() does.
int grabFrame(const record::Session& session, unsigned char* buffer, int* length);

// Why no further frame comes from descriptor after logGrabFailure() gave result.
Fault endOfStream(int result, int descriptor);

} // namespace doccam

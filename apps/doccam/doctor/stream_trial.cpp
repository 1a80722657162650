#include "doctor/stream_trial.h"

#include "camera/picture_format.h"
#include "doctor/driver_stream.h"
#include "doctor/frame_check.h"

#include <optional>

namespace doccam::host {
namespace {

// A camera's first frames may be damaged and are not checked.
constexpr int kFramesSkipped = 2;
constexpr int kFramesJudged = 6;

void judge(Trial& trial, const DriverFrame& frame, const DriverFormat& format) {
    ++trial.frames;
    const FrameFlaw flaw =
        frame.damaged ? FrameFlaw::kShort : flawOf(frame.bytes, format.format, format.size);
    trial.shortFrames += flaw == FrameFlaw::kShort ? 1 : 0;
    trial.framesWithoutJpeg += flaw == FrameFlaw::kNoJpeg ? 1 : 0;
}

void stream(DriverStream& driver, Trial& trial, const Interrupt& interrupt) {
    const DriverFormat format = driver.largestFormat();
    trial.capture = nameOf(format.format) + " " + textOf(format.size);
    driver.start(format);
    for (int i = 0; i < kFramesSkipped + kFramesJudged; ++i) {
        interrupt.check();
        const bool came = driver.withNextFrame([&](const DriverFrame& frame) {
            if (i >= kFramesSkipped) {
                judge(trial, frame, format);
            }
        });
        if (!came) {
            return;
        }
    }
}

} // namespace

int tryStream(const std::string& node, Trial& trial, const Interrupt& interrupt) {
    try {
        DriverStream driver(node);
        trial.held = true;
        stream(driver, trial, interrupt);
    } catch (const RequestFailure& failure) {
        if (!trial.held) {
            return failure.error();
        }
        trial.step = failure.request();
        trial.error = failure.error();
    }
    return 0;
}

} // namespace doccam::host

// The per-frame work of the streaming thread.
#pragma once

#include "capture/frame_intake.h"
#include "capture/streaming_thread.h"
#include "faults/faults.h"
#include "state/parts.h"

namespace doccam {

class FrameLoop {
  public:
    // Works on the thread's frames.
    FrameLoop(StreamingThread& thread, LibraryState& library);

    // Processes frames until the session ends, the driver fails or the thread is given up.
    void run();

  private:
    enum class Next { kFrame, kEnd };

    Next step();
    Next grab();
    Next decode();

    // Decodes and turns the frame; usable is set when the later stages may process it.
    Next prepareFrame(bool& usable);
    bool dropAfterTurn();
    void rotate();
    Next takeStill();
    Next readCode();
    void drawOutline();
    Next deliverFrame();
    Next deliverPreview();

    // True when the host has a fault callback and has not ended the stream itself. Only then may
    // the driver be asked for the reason.
    bool endsUnexpectedly() const;

    // Reports deferred faults to the host.
    Next reportFaults();

    // Completes the request that clearFlag clears. Its faults are reported before a waiting host
    // sees it completed; a host that reopens the camera on such a report must not find it pending.
    template <typename ClearFlag>
    Next completeRequest(ClearFlag&& clearFlag);

    bool isMjpeg() const;

    // The image that a stage works on, null for an undefined rotation.
    const cv::Mat* workingImage() const;

    StreamingThread& thread_;
    Frames& frames_;
    LibraryState& library_;
    DeferredFaults faults_;
    FrameIntake intake_;
};

// The streaming thread's work from its first frame to its last.
void streamFrames(StreamingThread& thread);

} // namespace doccam

// The per-frame work of the streaming thread.
#pragma once

#include "capture/frame_intake.h"
#include "capture/live_sheet.h"
#include "capture/streaming_thread.h"
#include "faults/faults.h"
#include "state/parts.h"

#include <span>

namespace doccam {

class FrameLoop {
  public:
    // Works on the thread's frames.
    FrameLoop(StreamingThread& thread, LibraryState& library);

    // Processes frames until the session ends, the driver fails or the thread is given up.
    void run();

    // On a streaming thread in the frame callback, the frame as the camera sent it; empty if that
    // is no JPEG, and anywhere else.
    static std::span<const unsigned char> handedBytes();

  private:
    // The stages return false when the thread must end.
    bool step();
    bool grab();
    bool decode();

    // Decodes and turns the frame; usable is set when the later stages may process it.
    bool prepareFrame(bool& usable);
    bool dropAfterTurn();
    void rotate();
    bool takeStill();
    bool readCode();
    void drawOutline();
    bool deliverFrame();
    bool deliverPreview();

    // True with a fault callback unless the host ends the stream; else no reason may be asked for.
    bool endsUnexpectedly() const;

    // Reports deferred faults to the host.
    bool reportFaults();

    // Completes the request that clearFlag clears. Its faults are reported before a waiting host
    // sees it completed; a host that reopens the camera on such a report must not find it pending.
    template <typename ClearFlag>
    bool completeRequest(ClearFlag&& clearFlag);

    bool isMjpeg() const;

    // The image that a stage works on, null for an undefined rotation.
    const cv::Mat* workingImage() const;

    StreamingThread& thread_;
    Frames& frames_;
    LibraryState& library_;
    DeferredFaults faults_;
    FrameIntake intake_;
    LiveSheet liveSheet_;
};

// The streaming thread's work from its first frame to its last.
void streamFrames(StreamingThread& thread);

} // namespace doccam

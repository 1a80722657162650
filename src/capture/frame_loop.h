// The per-frame work of the streaming thread.
#pragma once

#include "capture/frame_intake.h"
#include "capture/streaming_thread.h"
#include "state/faults.h"

namespace doccam {

struct LibraryState;

class FrameLoop {
  public:
    FrameLoop(StreamingThread& thread, LibraryState& library);

    // Works frame after frame until the session ends, the driver fails or the thread is given up.
    void run();

  private:
    enum class Next { kFrame, kEnd };

    Next step();
    Next grab();
    Next decode();

    // Whether the frame is there, decoded and turned, for the stages to come.
    Next prepareFrame(bool& usable);
    bool dropAfterTurn();
    void rotate();
    Next takeStill();
    Next readCode();
    void drawOutline();
    Next deliverFrame();
    Next deliverPreview();

    // True when a host that hears faults has not ended the stream itself. Only then may the driver
    // be asked for the reason.
    bool endsUnasked() const;

    // Hands noted faults to the host.
    Next reportFaults();

    // Takes back the request that lower lowers. A host that waits for the answer hears faults
    // first; one that reopens the camera when it hears them must not find the request again.
    template <typename Lower>
    Next answer(Lower&& lower);

    bool isMjpeg() const;

    // The image that a stage works on, null for a rotation that is none.
    const cv::Mat* workingImage() const;

    StreamingThread& thread_;
    LibraryState& library_;
    DeferredFaults faults_;
    FrameIntake intake_;
};

// The streaming thread's work from its first frame to its last.
void streamFrames(StreamingThread& thread);

} // namespace doccam

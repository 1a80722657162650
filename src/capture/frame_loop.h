// The per-frame work of the streaming thread.
#pragma once

#include "api/faults.h"
#include "base/zeroed_bytes.h"
#include "capture/streaming_thread.h"

#include <cstddef>

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
    bool dropAfterTurn();
    void rotate();
    Next takeStill();
    Next readCode();
    void drawOutline();
    Next deliverFrame();
    Next deliverPreview();

    // Notes why the stream ends, unless the host ends it.
    void noteEnd(const char* reason);

    // Hands noted faults to the host.
    Next tellFaults();

    bool isMjpeg() const;

    // The image that a stage works on, null for a rotation that is none.
    const cv::Mat* workingImage() const;

    StreamingThread& thread_;
    LibraryState& library_;
    FaultNotes faults_;
    std::size_t frameCapacity_;
    ZeroedBytes buffer_; // one raw frame, and the zero bytes a decoder reads behind
    int frameLength_ = 0;
    int dirtyLength_ = 0; // bytes that earlier frames may have left
};

} // namespace doccam

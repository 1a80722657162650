// The per-frame work of the streaming thread.
#pragma once

#include "api/faults.h"
#include "base/zeroed_bytes.h"
#include "capture/grab_frame.h"
#include "capture/streaming_thread.h"
#include "decode/mjpeg_decoder.h"

#include <cstddef>

namespace doccam {

struct LibraryState;

class FrameLoop {
  public:
    FrameLoop(StreamingThread& thread, LibraryState& library);
    ~FrameLoop();
    FrameLoop(const FrameLoop&) = delete;
    FrameLoop& operator=(const FrameLoop&) = delete;

    // Works frame after frame until the session ends, the driver fails or the thread is given up.
    void run();

  private:
    enum class Next { kFrame, kEnd };

    Next step();
    Next grab();
    Next decode();

    // Takes the next frame from the driver, which may not have one yet.
    Next fetch();

    // Takes the next frame and begins to decode it, when the driver has one: codecs use one
    // thread, and what is left to do with the present frame needs less than another.
    Next fetchAhead();
    Decoded decodeFetched() const;
    Decoded takeDecoded();

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
    Next tellFaults();

    // Takes back the request that lower lowers. A host that waits for the answer hears faults
    // first; one that reopens the camera when it hears them must not find the request again.
    template <typename Lower>
    Next answer(Lower&& lower);

    bool isMjpeg() const;

    // The image that a stage works on, null for a rotation that is none.
    const cv::Mat* workingImage() const;

    StreamingThread& thread_;
    LibraryState& library_;
    FaultNotes faults_;
    std::size_t frameCapacity_;
    ZeroedBytes buffer_; // one raw frame, and the zero bytes a decoder reads behind
    GrabbedFrame fetched_;
    bool isAhead_ = false;      // fetched_ is the next frame
    bool decodesAhead_ = false; // and is being decoded
    Decoded decodedAhead_ = Decoded::kNothing;
    int dirtyLength_ = 0; // bytes that earlier frames may have left
};

} // namespace doccam

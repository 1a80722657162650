// Taking frames from the driver and decoding them, one frame ahead.
#pragma once

#include "base/zeroed_bytes.h"
#include "capture/grab_frame.h"
#include "capture/streaming_thread.h"
#include "decode/mjpeg_frames.h"
#include "state/parts.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <memory>

namespace doccam {

// Decoding takes longer than all other work on a frame. So a second thread decodes the next MJPEG
// frame meanwhile, if the driver already has it, and what becomes of it is reported in its turn.
class FrameIntake {
  public:
    FrameIntake(StreamingThread& thread, const record::Session& session);
    ~FrameIntake();
    FrameIntake(const FrameIntake&) = delete;
    FrameIntake& operator=(const FrameIntake&) = delete;

    // Waits for the next frame and takes it. False when the thread has been given up meanwhile.
    bool take();

    // What became of the frame taken last.
    const GrabbedFrame& grabbed() const { return frame_->grabbed; }

    // Its bytes; one pair of pixels past their end may be read.
    unsigned char* bytes() const { return frame_->bytes.data(); }

    // Decodes the frame taken last into image. False when the thread has been given up meanwhile.
    bool decodeInto(cv::Mat& image);

  private:
    struct RawFrame {
        explicit RawFrame(std::size_t reserved)
          : bytes(reserved) {}

        ZeroedBytes bytes;   // and the zeros that a decoder reads past the frame
        int dirtyLength = 0; // bytes that earlier frames may have left
        GrabbedFrame grabbed;
    };

    bool fetch(RawFrame& frame);
    bool fetchNextIfThere();
    void beginNext();
    Decoded decode(FrameSize wanted);
    MjpegFrame mjpegIn(const RawFrame& frame) const;

    StreamingThread& thread_;
    const record::Session& session_;
    std::size_t capacity_; // of a frame
    std::size_t reserved_;
    FrameSize wanted_; // of the decoded frames
    std::unique_ptr<RawFrame> frame_;
    bool isBegun_ = false; // the decode thread has frame_
    std::unique_ptr<RawFrame> next_;
    bool hasNext_ = false;
    bool nextIsBegun_ = false;
    MjpegPicture nextPicture_; // the decode thread's, and so is the result
    Decoded nextResult_ = Decoded::kNothing;
};

} // namespace doccam

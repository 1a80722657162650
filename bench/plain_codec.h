// The codec and scaler libraries called in the plainest way: decode one JPEG, convert it, no more.
#pragma once

#include "base/handles/codec_handles.h"
#include "device/frame_source.h"

#include <opencv2/core/mat.hpp>

#include <cstdint>
#include <vector>

namespace doccam::bench {

class PlainCodec {
  public:
    PlainCodec();

    // Takes a copy of the JPEG, with the padding that the codec wants.
    void take(const virtualcam::FrameBytes& jpeg);

    // Decodes what was taken and converts it to pixels().
    void run();

    const cv::Mat& pixels() const { return pixels_; }

  private:
    CodecContext context_;
    CodecPacket packet_;
    CodecFrame frame_;
    CodecScaler scaler_;
    virtualcam::FrameBytes taken_;
    cv::Mat pixels_;
};

} // namespace doccam::bench

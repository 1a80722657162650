// libavcodec and libswscale called in the plainest way: decode one JPEG and convert it.
#pragma once

#include "device/frame_source.h"
#include "modules/mjpeg/codec_handles.h"

#include <opencv2/core/mat.hpp>

#include <cstdint>
#include <vector>

namespace doccam::bench {

class PlainCodec {
  public:
    PlainCodec();

    // Copies the JPEG, with the padding that libavcodec needs.
    void take(const virtualcam::FrameBytes& jpeg);

    // Decodes the copy and converts it to pixels().
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

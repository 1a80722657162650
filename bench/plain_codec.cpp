#include "plain_codec.h"

#include "picture.h"

#include <cstring>
#include <stdexcept>

namespace doccam::bench {

PlainCodec::PlainCodec()
  : packet_(av_packet_alloc())
  , frame_(av_frame_alloc())
  , pixels_(kHeight, kWidth, CV_8UC3) {
    const AVCodec* const codec = avcodec_find_decoder(AV_CODEC_ID_MJPEG);
    context_.reset(avcodec_alloc_context3(codec));
    if (avcodec_open2(context_.get(), codec, nullptr) < 0) {
        throw std::runtime_error("no codec for JPEG");
    }
}

void PlainCodec::take(const virtualcam::FrameBytes& jpeg) {
    if (taken_ == jpeg) {
        return;
    }
    taken_ = jpeg;
    av_packet_unref(packet_.get());
    av_new_packet(packet_.get(), static_cast<int>(jpeg->size()));
    std::memcpy(packet_->data, jpeg->data(), jpeg->size());
}

void PlainCodec::run() {
    if (avcodec_send_packet(context_.get(), packet_.get()) < 0 ||
        avcodec_receive_frame(context_.get(), frame_.get()) < 0) {
        throw std::runtime_error("a frame was not decoded");
    }
    if (!scaler_) {
        scaler_.reset(sws_getContext(kWidth, kHeight, static_cast<AVPixelFormat>(frame_->format),
                                     kWidth, kHeight, AV_PIX_FMT_RGB24, SWS_BICUBIC, nullptr,
                                     nullptr, nullptr));
    }
    std::uint8_t* const planes[4] = {pixels_.data, nullptr, nullptr, nullptr};
    const int strides[4] = {static_cast<int>(pixels_.step), 0, 0, 0};
    sws_scale(scaler_.get(), frame_->data, frame_->linesize, 0, kHeight, planes, strides);
}

} // namespace doccam::bench

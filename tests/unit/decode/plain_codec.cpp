#include "plain_codec.h"

#include "modules/mjpeg/codec_handles.h"
#include "modules/mjpeg/libav_decoder.h"

#include <cstring>
#include <stdexcept>

namespace doccam::test {
namespace {

CodecFrame decoded(const Bytes& jpeg) {
    const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_MJPEG);
    const CodecContext context(avcodec_alloc_context3(codec));
    const CodecPacket packet(av_packet_alloc());
    CodecFrame frame(av_frame_alloc());
    if (avcodec_open2(context.get(), codec, nullptr) < 0 ||
        av_new_packet(packet.get(), static_cast<int>(jpeg.size())) < 0) {
        throw std::runtime_error("no codec");
    }
    std::memcpy(packet->data, jpeg.data(), jpeg.size());
    if (avcodec_send_packet(context.get(), packet.get()) < 0 ||
        avcodec_receive_frame(context.get(), frame.get()) < 0) {
        throw std::runtime_error("not decoded");
    }
    return frame;
}

} // namespace

cv::Mat plainlyScaled(const Bytes& jpeg, cv::Size size, cv::Size cut) {
    const CodecFrame frame = decoded(jpeg);
    const cv::Size source = cut.empty() ? cv::Size(frame->width, frame->height) : cut;
    const CodecScaler scaler(sws_getContext(
        source.width, source.height, static_cast<AVPixelFormat>(frame->format), size.width,
        size.height, AV_PIX_FMT_RGB24, SWS_BICUBIC, nullptr, nullptr, nullptr));
    // libswscale writes blocks of 16 pixels, also at the end of a row.
    cv::Mat blocks(size.height + 1, (size.width + 15) / 16 * 16, CV_8UC3);
    std::uint8_t* const planes[4] = {blocks.data, nullptr, nullptr, nullptr};
    const int strides[4] = {static_cast<int>(blocks.step), 0, 0, 0};
    sws_scale(scaler.get(), frame->data, frame->linesize, 0, source.height, planes, strides);
    return blocks(cv::Rect({0, 0}, size)).clone();
}

} // namespace doccam::test

#include "modules/mjpeg/picture_scaler.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <opencv2/core/types.hpp>

#include <array>

namespace doccam {
namespace {

struct SourceFormat {
    AVPixelFormat format;
    bool fullRange;
};

// libswscale prints a warning about the full-range (J) variants of pixel formats, and accepts the
// plain format with a range instead.
SourceFormat sourceFormat(const AVFrame& picture) {
    switch (picture.format) {
    case AV_PIX_FMT_YUVJ411P:
        return {AV_PIX_FMT_YUV411P, true};
    case AV_PIX_FMT_YUVJ420P:
        return {AV_PIX_FMT_YUV420P, true};
    case AV_PIX_FMT_YUVJ422P:
        return {AV_PIX_FMT_YUV422P, true};
    case AV_PIX_FMT_YUVJ440P:
        return {AV_PIX_FMT_YUV440P, true};
    case AV_PIX_FMT_YUVJ444P:
        return {AV_PIX_FMT_YUV444P, true};
    default:
        return {static_cast<AVPixelFormat>(picture.format), false};
    }
}

// Whether the scaler only converts the colours of such pictures. It then takes their rows in pairs,
// each by itself; an odd number of rows takes another path.
bool isRecoloured(AVPixelFormat format, cv::Size from, cv::Size to) {
    return (format == AV_PIX_FMT_YUV420P || format == AV_PIX_FMT_YUV422P) && from == to &&
           to.height % 2 == 0;
}

int option(SwsContext& scaler, const char* name) {
    std::int64_t value = 0;
    av_opt_get_int(&scaler, name, 0, &value);
    return static_cast<int>(value);
}

// Scales all rows in one call, on the scaler's threads. False if out of memory.
bool scaleInBands(SwsContext& scaler, const AVFrame& picture, int rows, ScaledRows target) {
    const CodecFrame frame(av_frame_alloc());
    const auto bytes =
        static_cast<std::size_t>(target.step) * static_cast<std::size_t>(target.count);
    CodecBuffer borrowed(av_buffer_create(
        target.first, bytes, [](void* /*opaque*/, std::uint8_t* /*data*/) {}, nullptr, 0));
    if (!frame || !borrowed) {
        return false;
    }
    frame->data[0] = target.first;
    frame->linesize[0] = target.step;
    frame->buf[0] = borrowed.release();
    const bool done = sws_frame_start(&scaler, frame.get(), &picture) >= 0 &&
                      sws_send_slice(&scaler, 0, static_cast<unsigned>(rows)) >= 0 &&
                      sws_receive_slice(&scaler, 0, static_cast<unsigned>(target.count)) >= 0;
    sws_frame_end(&scaler);
    return done;
}

} // namespace

CodecScaler makeScaler(const AVFrame& source, int width, int height, int threads) {
    const auto [format, fullRange] = sourceFormat(source);
    CodecScaler scaler(sws_alloc_context());
    if (!scaler || sws_isSupportedInput(format) == 0) {
        return nullptr;
    }
    SwsContext* const options = scaler.get();
    av_opt_set_int(options, "srcw", source.width, 0);
    av_opt_set_int(options, "srch", source.height, 0);
    av_opt_set_pixel_fmt(options, "src_format", format, 0);
    av_opt_set_int(options, "src_range", fullRange ? 1 : 0, 0);
    av_opt_set_int(options, "dstw", width, 0);
    av_opt_set_int(options, "dsth", height, 0);
    av_opt_set_pixel_fmt(options, "dst_format", AV_PIX_FMT_RGB24, 0);
    av_opt_set_int(options, "sws_flags", SWS_BICUBIC, 0);
    if (isRecoloured(format, {source.width, source.height}, {width, height})) {
        av_opt_set_int(options, "threads", threads, 0);
    }
    if (sws_init_context(options, nullptr, nullptr) < 0) {
        // The system may have had no more threads.
        return threads > 1 ? makeScaler(source, width, height, 1) : nullptr;
    }
    return scaler;
}

bool coversSource(const AVFrame& picture, SwsContext& scaler) {
    AVPixelFormat format = AV_PIX_FMT_NONE;
    av_opt_get_pixel_fmt(&scaler, "src_format", 0, &format);
    return sourceFormat(picture).format == format && picture.width >= option(scaler, "srcw") &&
           picture.height >= option(scaler, "srch");
}

bool changesColoursOnly(SwsContext& scaler, int width, int height) {
    AVPixelFormat format = AV_PIX_FMT_NONE;
    av_opt_get_pixel_fmt(&scaler, "src_format", 0, &format);
    return option(scaler, "dstw") == width && option(scaler, "dsth") == height &&
           isRecoloured(format, {option(scaler, "srcw"), option(scaler, "srch")}, {width, height});
}

void scalePicture(SwsContext& scaler, const AVFrame& picture, ScaledRows target) {
    const int rows = option(scaler, "srch");
    if (option(scaler, "threads") > 1 && scaleInBands(scaler, picture, rows, target)) {
        return;
    }
    const std::array<std::uint8_t*, 4> targets{target.first};
    const std::array<int, 4> steps{target.step};
    sws_scale(&scaler, picture.data, picture.linesize, 0, rows, targets.data(), steps.data());
}

} // namespace doccam

#include "decode/picture_scaler.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace doccam {
namespace {

struct SourceFormat {
    AVPixelFormat format;
    bool fullRange;
};

// The scaler library warns on the terminal about the full-range twins of pixel formats, and takes
// the plain format with a range instead.
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

int option(SwsContext& scaler, const char* name) {
    std::int64_t value = 0;
    av_opt_get_int(&scaler, name, 0, &value);
    return static_cast<int>(value);
}

} // namespace

CodecScaler makeScaler(const AVFrame& source, int width, int height) {
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
    if (sws_init_context(options, nullptr, nullptr) < 0) {
        return nullptr;
    }
    return scaler;
}

bool coversSource(const AVFrame& picture, SwsContext& scaler) {
    AVPixelFormat format = AV_PIX_FMT_NONE;
    av_opt_get_pixel_fmt(&scaler, "src_format", 0, &format);
    return sourceFormat(picture).format == format && picture.width >= option(scaler, "srcw") &&
           picture.height >= option(scaler, "srch");
}

void scalePicture(SwsContext& scaler, const AVFrame& picture, AVFrame& converted) {
    sws_scale(&scaler, picture.data, picture.linesize, 0, option(scaler, "srch"), converted.data,
              converted.linesize);
}

} // namespace doccam

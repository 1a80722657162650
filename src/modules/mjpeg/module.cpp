// The module that decodes MJPEG frames with libavcodec and libswscale.
#include "base/modules/module_seal.h"
#include "decode/mjpeg_codec.h"
#include "modules/mjpeg/libav_decoder.h"

namespace doccam {
namespace {

static_assert(kCodecPadding >= AV_INPUT_BUFFER_PADDING_SIZE);

void releasePicture(AVFrame* picture) {
    av_frame_free(&picture);
}

Decoded decode(MjpegDecoder& decoder, const MjpegFrame& frame, AVFrame* picture) {
    AVFrame* const target = picture != nullptr ? picture : decoder.picture.get();
    return target != nullptr ? decodePicture(decoder, frame, *target) : Decoded::kError;
}

void adopt(MjpegDecoder& decoder, AVFrame& picture) {
    if (decoder.picture) {
        av_frame_unref(decoder.picture.get());
        av_frame_move_ref(decoder.picture.get(), &picture);
    }
}

bool convert(MjpegDecoder& decoder, int width, int height, cv::Mat& out) {
    return decoder.picture && convertPicture(decoder, width, height, out);
}

} // namespace
} // namespace doccam

extern "C" {

[[gnu::visibility("default")]] extern constexpr doccam::MjpegCodec doccam_module{
    .head = {doccam::kMjpegModule, DOCCAM_MODULE_VERSION},
    .makeDecoder = [] { return doccam::makeMjpegDecoder().release(); },
    .releaseDecoder = [](doccam::MjpegDecoder* decoder) { delete decoder; },
    .makePicture = av_frame_alloc,
    .releasePicture = doccam::releasePicture,
    .decode = doccam::decode,
    .adopt = doccam::adopt,
    .convert = doccam::convert,
};

[[gnu::used, gnu::section(".doccam_seal")]] extern constexpr doccam::ModuleSeal doccam_seal =
    doccam::unsealed();
}

#include "serve/live/picture_encoder.h"

#include <turbojpeg.h>

#include <stdexcept>

namespace doccam::serve {
namespace {
constexpr int kQuality = 80;
}

PictureEncoder::PictureEncoder()
  : codec_(tjInitCompress()) {
    if (!codec_) {
        throw std::runtime_error("the JPEG encoder cannot be made");
    }
}

void PictureEncoder::CloseCodec::operator()(void* codec) const {
    tjDestroy(codec);
}

Jpeg PictureEncoder::encode(const FormPicture& form) {
    const auto [width, height] = form.size;
    if (width < 1 || height < 1) {
        throw std::runtime_error("a form without pixels");
    }
    room_.resize(tjBufSize(width, height, TJSAMP_420));
    unsigned char* out = room_.data();
    unsigned long size = room_.size();
    if (tjCompress2(codec_.get(), form.pixels.data(), width, 0, height, TJPF_RGB, &out, &size,
                    TJSAMP_420, kQuality, TJFLAG_NOREALLOC | TJFLAG_FASTDCT) != 0) {
        throw std::runtime_error(tjGetErrorStr2(codec_.get()));
    }
    return {room_.data(), room_.data() + size};
}

} // namespace doccam::serve

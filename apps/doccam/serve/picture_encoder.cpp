#include "serve/picture_encoder.h"

#include <turbojpeg.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace doccam::serve {
namespace {

constexpr int kQuality = 80;
constexpr int kChannels = 3;

bool fillsForm(const PreviewPicture& picture) {
    return picture.startX == 0 && picture.startY == 0 && picture.width == picture.formWidth &&
           picture.height == picture.formHeight;
}

std::size_t bytesOf(int pixels) {
    return static_cast<std::size_t>(pixels) * kChannels;
}

} // namespace

PictureEncoder::PictureEncoder()
  : codec_(tjInitCompress()) {
    if (!codec_) {
        throw std::runtime_error("the JPEG encoder cannot be made");
    }
}

void PictureEncoder::CloseCodec::operator()(void* codec) const {
    tjDestroy(codec);
}

const unsigned char* PictureEncoder::formPixels(const PreviewPicture& picture) {
    if (fillsForm(picture)) {
        return picture.pixels.data();
    }
    const std::size_t row = bytesOf(picture.formWidth);
    canvas_.assign(row * static_cast<std::size_t>(picture.formHeight), kSurround);
    const int left = std::max(picture.startX, 0);
    const int right = std::min(picture.startX + picture.width, picture.formWidth);
    const int top = std::max(picture.startY, 0);
    const int bottom = std::min(picture.startY + picture.height, picture.formHeight);
    for (int y = top; y < bottom && left < right; ++y) {
        const std::size_t from =
            bytesOf(picture.width) * static_cast<std::size_t>(y - picture.startY);
        std::memcpy(canvas_.data() + row * static_cast<std::size_t>(y) + bytesOf(left),
                    picture.pixels.data() + from + bytesOf(left - picture.startX),
                    bytesOf(right - left));
    }
    return canvas_.data();
}

Jpeg PictureEncoder::encode(const PreviewPicture& picture) {
    if (picture.formWidth < 1 || picture.formHeight < 1) {
        throw std::runtime_error("a form without pixels");
    }
    const unsigned char* pixels = formPixels(picture);
    room_.resize(tjBufSize(picture.formWidth, picture.formHeight, TJSAMP_420));
    unsigned char* out = room_.data();
    unsigned long size = room_.size();
    if (tjCompress2(codec_.get(), pixels, picture.formWidth, 0, picture.formHeight, TJPF_RGB, &out,
                    &size, TJSAMP_420, kQuality, TJFLAG_NOREALLOC | TJFLAG_FASTDCT) != 0) {
        throw std::runtime_error(tjGetErrorStr2(codec_.get()));
    }
    return {room_.data(), room_.data() + size};
}

} // namespace doccam::serve

#include "exports/stateless/image_argument.h"

#include <cstddef>
#include <cstdint>

namespace doccam {
namespace {

int channelsOf(int pixels) {
    switch (pixels) {
    case DOCCAM_PIXELS_GREY:
        return 1;
    case DOCCAM_PIXELS_BGR:
    case DOCCAM_PIXELS_RGB:
        return 3;
    default:
        return 0;
    }
}

} // namespace

bool isValid(const DoccamImage& image) {
    const int channels = channelsOf(image.pixels);
    return image.data != nullptr && channels > 0 && image.width > 0 && image.height > 0 &&
           image.width <= DOCCAM_PAGE_MAX_SIDE && image.height <= DOCCAM_PAGE_MAX_SIDE &&
           std::int64_t{image.width} * image.height <= DOCCAM_PAGE_MAX_PIXELS &&
           image.stride >= static_cast<std::size_t>(image.width) * static_cast<unsigned>(channels);
}

cv::Mat pixelsOf(const DoccamImage& image) {
    return {image.height, image.width, CV_8UC(channelsOf(image.pixels)),
            const_cast<unsigned char*>(image.data), image.stride};
}

} // namespace doccam

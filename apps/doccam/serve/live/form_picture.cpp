#include "serve/live/form_picture.h"

#include <algorithm>
#include <cstring>

namespace doccam::serve {
namespace {

constexpr std::size_t kChannels = 3;

std::size_t bytesOf(int pixels) {
    return static_cast<std::size_t>(pixels) * kChannels;
}

} // namespace

void compose(FormPicture& form, FormSize size, const Place& place, const unsigned char* picture) {
    const std::size_t row = bytesOf(size.width);
    if (form.size != size || form.place != place) {
        form.size = size;
        form.place = place;
        form.pixels.assign(row * static_cast<std::size_t>(size.height), kSurround);
    }
    const int left = std::max(place.x, 0);
    const int right = std::min(place.x + place.width, size.width);
    const int top = std::max(place.y, 0);
    const int bottom = std::min(place.y + place.height, size.height);
    for (int y = top; y < bottom && left < right; ++y) {
        const std::size_t from = bytesOf(place.width) * static_cast<std::size_t>(y - place.y);
        std::memcpy(form.pixels.data() + row * static_cast<std::size_t>(y) + bytesOf(left),
                    picture + from + bytesOf(left - place.x), bytesOf(right - left));
    }
}

} // namespace doccam::serve

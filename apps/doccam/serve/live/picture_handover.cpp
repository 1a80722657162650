#include "serve/live/picture_handover.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace doccam::serve {
namespace {

constexpr std::size_t kChannels = 3;

std::size_t bytesOf(int pixels) {
    return static_cast<std::size_t>(pixels) * kChannels;
}

} // namespace

void compose(FormPicture& form, host::Size size, const Place& place, const unsigned char* picture) {
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

void PictureHandover::setForm(host::Size form) {
    const std::lock_guard lock(mutex_);
    form_ = form;
}

void PictureHandover::setWanted(bool wanted) {
    const std::lock_guard lock(mutex_);
    wanted_ = wanted;
    fresh_ = fresh_ && wanted; // otherwise the next viewer would get an old picture
}

void PictureHandover::give(const unsigned char* picture, const Place& place) {
    {
        const std::lock_guard lock(mutex_);
        if (!wanted_ || form_.width < 1 || form_.height < 1) {
            return;
        }
        compose(newest_, form_, place, picture);
        fresh_ = true;
    }
    given_.notify_one();
}

bool PictureHandover::take(FormPicture& form) {
    std::unique_lock lock(mutex_);
    given_.wait(lock, [&] { return fresh_ || closed_; });
    if (!fresh_) {
        return false;
    }
    std::swap(form, newest_);
    fresh_ = false;
    return true;
}

void PictureHandover::close() {
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
    }
    given_.notify_one();
}

} // namespace doccam::serve

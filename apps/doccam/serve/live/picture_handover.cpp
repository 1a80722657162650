#include "serve/live/picture_handover.h"

#include "base/pixel.h"

#include <utility>

namespace doccam::serve {
void compose(FormPicture& form, host::Size size, const cv::Rect& place, unsigned char* picture) {
    if (form.size != size || form.place != place) {
        form.size = size;
        form.place = place;
        form.pixels.assign(static_cast<std::size_t>(size.area() * kChannels), kSurround);
    }
    if (const cv::Rect seen = place & cv::Rect(0, 0, size.width, size.height); !seen.empty()) {
        cv::Mat canvas(size.height, size.width, CV_8UC3, form.pixels.data());
        const cv::Mat whole(place.height, place.width, CV_8UC3, picture);
        whole(seen - place.tl()).copyTo(canvas(seen));
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

void PictureHandover::give(unsigned char* picture, const cv::Rect& place) {
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
    const std::lock_guard lock(mutex_);
    closed_ = true;
    given_.notify_one();
}

} // namespace doccam::serve

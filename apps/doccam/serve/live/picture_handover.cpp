#include "serve/live/picture_handover.h"

#include <utility>

namespace doccam::serve {

void PictureHandover::setForm(FormSize form) {
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

#include "serve/picture_handover.h"

#include <utility>

namespace doccam::serve {

void PictureHandover::setForm(int width, int height) {
    const std::lock_guard lock(mutex_);
    formWidth_ = width;
    formHeight_ = height;
}

void PictureHandover::setWanted(bool wanted) {
    const std::lock_guard lock(mutex_);
    wanted_ = wanted;
}

void PictureHandover::give(const unsigned char* pixels, int width, int height, int startX,
                           int startY) {
    if (width < 1 || height < 1) {
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        if (!wanted_ || formWidth_ < 1) {
            return;
        }
        const std::size_t bytes =
            static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3;
        newest_.pixels.assign(pixels, pixels + bytes);
        newest_.width = width;
        newest_.height = height;
        newest_.startX = startX;
        newest_.startY = startY;
        newest_.formWidth = formWidth_;
        newest_.formHeight = formHeight_;
        fresh_ = true;
    }
    given_.notify_one();
}

bool PictureHandover::take(PreviewPicture& picture) {
    std::unique_lock lock(mutex_);
    given_.wait(lock, [&] { return fresh_ || closed_; });
    if (closed_) {
        return false;
    }
    std::swap(picture, newest_);
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

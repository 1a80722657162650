#include "serve/live/picture_feed.h"

#include <utility>

namespace doccam::serve {

void PictureFeed::publish(Jpeg picture) {
    auto shared = std::make_shared<const Jpeg>(std::move(picture));
    {
        const std::lock_guard lock(mutex_);
        ++newest_.number;
        newest_.picture.swap(shared);
    }
    changed_.notify_all();
}

bool PictureFeed::awaitViewer() {
    std::unique_lock lock(mutex_);
    wanted_.wait(lock, [&] { return closed_ || waiting_ > 0; });
    return !closed_;
}

PictureFeed::Shown PictureFeed::next(std::uint64_t number, std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    ++waiting_;
    wanted_.notify_one();
    const bool arrived = changed_.wait_for(lock, patience, [&] {
        return closed_ || (newest_.number > number && newest_.picture != nullptr);
    });
    --waiting_;
    return arrived && !closed_ ? newest_ : Shown{0, nullptr, closed_};
}

void PictureFeed::clear() {
    const std::lock_guard lock(mutex_);
    newest_.picture.reset();
}

void PictureFeed::close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_all();
    wanted_.notify_all();
}

} // namespace doccam::serve

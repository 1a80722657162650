#include "serve/live/frame_looks.h"

#include "serve/owned_thread.h"

#include <sys/resource.h>

#include <utility>

namespace doccam::serve {
namespace {

constexpr int kNice = 10;

} // namespace

FrameLooks::FrameLooks(std::chrono::milliseconds every, bool lowPriority, Reduce reduce, Look look)
  : every_(every)
  , reduce_(std::move(reduce))
  , look_(std::move(look))
  , thread_(ownedThread([this, lowPriority] { run(lowPriority); })) {}

FrameLooks::~FrameLooks() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_one();
}

void FrameLooks::setWanted(bool wanted) {
    {
        const std::lock_guard lock(mutex_);
        wanted_ = wanted;
    }
    if (!wanted) {
        forget();
    }
}

void FrameLooks::forget() {
    const std::lock_guard lock(mutex_);
    fresh_ = true;
    forgotten_ = true;
    given_.release();
    changed_.notify_one();
}

void FrameLooks::give(unsigned char* pixels, int width, int height) {
    const std::lock_guard lock(mutex_);
    if (!wanted_ || !free_) {
        return;
    }
    reduce_(cv::Mat(height, width, CV_8UC3, pixels), given_);
    fresh_ = true;
    forgotten_ = false;
    changed_.notify_one();
}

bool FrameLooks::awaitFrame() {
    std::unique_lock lock(mutex_);
    free_ = true;
    changed_.wait(lock, [this] { return fresh_ || closed_; });
    free_ = false;
    fresh_ = false;
    cv::swap(frame_, given_);
    if (forgotten_) {
        frame_.release();
        forgotten_ = false;
    }
    return !closed_;
}

// On Linux a thread has a priority of its own.
void FrameLooks::run(bool lowPriority) {
    if (lowPriority) {
        setpriority(PRIO_PROCESS, 0, kNice);
    }
    while (awaitFrame()) {
        const auto next = std::chrono::steady_clock::now() + every_;
        look_(frame_);
        std::unique_lock lock(mutex_);
        changed_.wait_until(lock, next, [this] { return closed_; });
    }
}

} // namespace doccam::serve

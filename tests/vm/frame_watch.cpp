#include "vm/frame_watch.h"

#include <doccam/doccam.h>

#include <condition_variable>
#include <mutex>

namespace doccam::vm {
namespace {

std::mutex mutex;
std::condition_variable came;
int seen = 0;
bool wanted = false;
cv::Mat copy;

void onFrame(unsigned char* pixels, int width, int height) {
    const std::lock_guard lock(mutex);
    ++seen;
    if (wanted) {
        cv::Mat(height, width, CV_8UC3, pixels).copyTo(copy);
        wanted = false;
        came.notify_all();
    }
}

} // namespace

void watchFrames() {
    SetDataCallback(onFrame);
}

cv::Mat nextFrame() {
    std::unique_lock lock(mutex);
    wanted = true;
    came.wait(lock, [] { return !wanted; });
    return copy.clone();
}

int framesSeen() {
    const std::lock_guard lock(mutex);
    return seen;
}

} // namespace doccam::vm

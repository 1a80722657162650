#include "vm/frame_watch.h"

#include <doccam/doccam.h>

#include <condition_variable>
#include <mutex>
#include <optional>

namespace doccam::vm {
namespace {

std::mutex mutex;
std::condition_variable came;
bool wanted = false;
cv::Mat copy;
std::optional<std::string> end; // why the stream ended

void onFrame(unsigned char* pixels, int width, int height) {
    const std::lock_guard lock(mutex);
    if (wanted) {
        cv::Mat(height, width, CV_8UC3, pixels).copyTo(copy);
        wanted = false;
        came.notify_all();
    }
}

void onFault(int fault, const char* message) {
    const std::lock_guard lock(mutex);
    if (fault == DOCCAM_FAULT_STREAM_ENDED) {
        end = message;
        came.notify_all();
    }
}

} // namespace

void watchFrames() {
    SetDataCallback(onFrame);
    SetFaultCallback(onFault);
}

void expectStream() {
    const std::lock_guard lock(mutex);
    end.reset();
}

std::string endOfStream() {
    std::unique_lock lock(mutex);
    came.wait(lock, [] { return end.has_value(); });
    return *end;
}

cv::Mat nextFrame() {
    std::unique_lock lock(mutex);
    wanted = true;
    came.wait(lock, [] { return !wanted || end; });
    return wanted ? cv::Mat() : copy.clone();
}

} // namespace doccam::vm

#include "live_session.h"

#include <doccam/doccam.hpp>

#include <array>
#include <atomic>
#include <stdexcept>
#include <utility>

namespace doccam::bench {
namespace {

// Globals, since the callbacks take no context.
std::atomic<int> arrived{0};   // frames delivered by the streaming thread
std::atomic<int> permitted{0}; // frames after which it may continue
std::atomic<bool> held{false}; // whether it waits for permission
unsigned char* lastPixels = nullptr;
virtualcam::CameraId opened{};
std::array<virtualcam::FrameBytes, 2> sent; // the JPEGs at the last two calls

constexpr int kNoMoreWaiting = 1 << 30;

void waitUntil(const std::atomic<int>& value, int least) {
    for (int now = value; now < least; now = value) {
        value.wait(now);
    }
}

void onFrame(unsigned char* pixels, int /*width*/, int /*height*/) {
    lastPixels = pixels;
    sent[0] = std::exchange(sent[1], virtualcam::lastFrame(opened)->bytes);
    const int number = ++arrived;
    arrived.notify_all();
    for (int now = permitted; now < number; now = permitted) {
        held = true;
        held.notify_all();
        permitted.wait(now);
    }
}

void onPreview(unsigned char* /*pixels*/, int /*width*/, int /*height*/, int /*x*/, int /*y*/) {}

virtualcam::CameraDescription cameraShowing(const Picture& picture) {
    virtualcam::CameraDescription camera = virtualcam::documentCamera("0c45", "6366");
    camera.intervalMs = 0;
    camera.picture = picture.photo;
    return camera;
}

} // namespace

LiveSession::LiveSession(const Picture& picture)
  : own_(bed_.add(cameraShowing(picture)))
  , other_(bed_.add(cameraShowing(picture))) {
    permitted = 0;
    arrived = 0;
    opened = own_;
    SetVideoFormat(0);
    SetRotate(1);
    SetCutType(1);
    SetDataCallback(onFrame);
    SetWebDataCallback(onPreview);
    if (getDeviceCount() < 1 || openCamera(0, kWidth, kHeight) != 0) {
        throw std::runtime_error("the virtual camera cannot be opened; run scripts/bench");
    }
    SetWebFormSize(800, 600);
    waitUntil(arrived, 1);
    // Warm-up: afterwards everything created once exists.
    for (int frame = 0; frame < 5; ++frame) {
        nextFrame();
    }
}

LiveSession::~LiveSession() {
    permitted = kNoMoreWaiting;
    permitted.notify_all();
    closeCamera();
}

void LiveSession::nextFrame() {
    const int number = ++permitted;
    permitted.notify_all();
    waitUntil(arrived, number + 1);
}

void LiveSession::start() {
    held = false;
    permitted = kNoMoreWaiting;
    permitted.notify_all();
    constexpr int kUntilInStride = 3;
    waitForFrames(kUntilInStride);
}

void LiveSession::waitForFrames(int count) const {
    waitUntil(arrived, arrived + count);
}

void LiveSession::stop() {
    permitted = 0;
    held.wait(false);
    permitted = arrived - 1;
    // The work left after the callback takes less than this.
    Sleep(60);
}

cv::Mat LiveSession::frameView() const {
    return {kWidth, kHeight, CV_8UC3, lastPixels};
}

std::vector<virtualcam::FrameBytes> LiveSession::jpegs() const {
    return {sent.begin(), sent.end()};
}

} // namespace doccam::bench

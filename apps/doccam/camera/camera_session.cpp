#include "camera/camera_session.h"

#include "camera/opening_codes.h"
#include "host/failure.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>
#include <poll.h>

#include <atomic>
#include <filesystem>
#include <vector>

namespace doccam::host {
namespace {

constexpr int kLongestSilenceMs = 10000;
constexpr int kNoOutline = -1;

// On the streaming thread, which an exception must not leave by way of a callback.
int outlineOf(unsigned char* pixels, int width, int height) {
    try {
        return DrawingEdge(pixels, width, height, 0);
    } catch (const cv::Exception&) {
        return kNoOutline;
    }
}

} // namespace

CameraSession::CameraSession(int camera, const Capture& capture, const Interrupt& interrupt)
  : camera_(camera)
  , capture_(capture)
  , interrupt_(interrupt)
  , feed_(FrameFeed::instance()) {
    feed_.restart();
    SetVideoFormat(static_cast<int>(capture.format));
    SetCutType(0);
    if (const int code = openCamera(camera, capture.size.width, capture.size.height); code != 0) {
        throw Failure(kCameraFailed, "Camera " + std::to_string(camera) + " cannot be opened at " +
                                         textOf(capture.size) + ": " + openingAdvice(code));
    }
    try {
        waitForFrames(1);
    } catch (...) {
        closeCamera();
        throw;
    }
}

CameraSession::~CameraSession() {
    feed_.listen({});
    closeCamera();
}

void CameraSession::failIfEnded() const {
    if (const auto reason = feed_.ended()) {
        throw Failure(kCameraFailed, "Camera " + std::to_string(camera_) + " stopped: " + *reason +
                                         "; check its cable and try again.");
    }
}

void CameraSession::waitForFrames(std::uint64_t count) {
    const std::uint64_t wanted = feed_.frames() + count;
    while (feed_.frames() < wanted) {
        waitForEvent();
    }
}

void CameraSession::waitForEvent(std::initializer_list<int> others) {
    std::vector<pollfd> events{{interrupt_.descriptor(), POLLIN, 0},
                               {feed_.descriptor(), POLLIN, 0}};
    for (const int other : others) {
        events.push_back({other, POLLIN, 0});
    }
    const int ready = poll(events.data(), events.size(), kLongestSilenceMs);
    interrupt_.check();
    feed_.acknowledge();
    failIfEnded();
    if (ready == 0) {
        throw Failure(kCameraFailed, "Camera " + std::to_string(camera_) +
                                         " sends no frames; unplug it, plug it in again, or run "
                                         "doccam doctor.");
    }
}

bool CameraSession::findSheet() {
    enum { kPending = 1 };

    std::atomic<int> result{kPending};
    feed_.listen([&result](unsigned char* pixels, int width, int height) {
        if (result == kPending) {
            result = outlineOf(pixels, width, height);
        }
    });
    try {
        while (result == kPending) {
            waitForEvent();
        }
    } catch (...) {
        feed_.listen({});
        throw;
    }
    feed_.listen({});
    return result == 0;
}

void CameraSession::still(const std::string& path, bool crop) {
    feed_.takeFault();
    SetCutType(crop ? 1 : 0);
    const int accepted = captureImage(path.c_str());
    SetCutType(0);
    interrupt_.check();
    failIfEnded();
    std::error_code ignored;
    if (accepted == 0 && std::filesystem::is_regular_file(path, ignored)) {
        return;
    }
    const std::string fault = feed_.takeFault();
    throw Failure(kFileFailed, "The still could not be saved: " +
                                   (fault.empty() ? "the disk is full, or the name is too long or "
                                                    "its extension unknown"
                                                  : fault) +
                                   "; choose another file name.");
}

} // namespace doccam::host

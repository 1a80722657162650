#include "camera/camera_session.h"

#include "base/unique_fd.h"
#include "camera/page_settings.h"
#include "host/failure.h"
#include "host/modules/with_modules.h"

#include <doccam/doccam.hpp>
#include <doccam/frame.h>

#include <opencv2/imgproc.hpp>
#include <poll.h>
#include <sys/timerfd.h>

#include <atomic>
#include <ctime>
#include <exception>
#include <filesystem>
#include <optional>
#include <vector>

namespace doccam::host {
namespace {

// The frame in progress at the request, and the frame that serves it.
constexpr int kFramesUntilAnswer = 2;

// Per look. Waiting for a silent camera uses a fraction of it; a process at work uses twice as
// much, even with only a hundredth of a processor.
constexpr std::chrono::milliseconds kMinimumWork{5};

struct Unlistened {
    FrameFeed& feed;

    ~Unlistened() { feed.listen({}); }
};

struct Cropped {
    explicit Cropped(bool crop) { cropToSheet(crop); }

    ~Cropped() { cropToSheet(false); }
};

bool isThere(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

[[noreturn]] void failToSave(const std::optional<StillFault>& fault) {
    if (!fault || fault->cause == DOCCAM_CAUSE_NOT_WRITTEN) {
        throw Failure(kFileFailed, "The still could not be saved; look whether the disk is full, "
                                   "or choose a shorter name.");
    }
    throw Failure(kCameraFailed, "The still could not be taken: " + fault->message +
                                     "; lay the sheet anew and try again.");
}

} // namespace

std::string openingAdvice(int code) {
    const std::string number = " (code " + std::to_string(code) + ")";
    switch (code) {
    case DOCCAM_OPEN_NO_CAMERA:
        return "there is no such camera" + number + "; doccam list shows which there are.";
    case DOCCAM_OPEN_NO_SIZE:
        return "it names no such frame size" + number + "; doccam sizes shows which there are.";
    case DOCCAM_OPEN_NO_NODE:
        return "its device node cannot be opened" + number + "; doccam doctor says why.";
    case DOCCAM_OPEN_TRY_FORMAT:
    case DOCCAM_OPEN_SET_FORMAT:
    case DOCCAM_OPEN_GET_FORMAT:
        return "the driver refuses the format" + number +
               "; another program may be using the camera, doccam doctor says which.";
    case DOCCAM_OPEN_REQUEST_BUFFERS:
    case DOCCAM_OPEN_TOO_FEW_BUFFERS:
    case DOCCAM_OPEN_QUERY_BUFFER:
    case DOCCAM_OPEN_MAP_BUFFER:
    case DOCCAM_OPEN_QUEUE_BUFFER:
        return "the driver gives no buffers" + number +
               "; close other programs that use the camera, or choose a smaller --size.";
    case DOCCAM_OPEN_STREAM_ON:
        return "the stream does not start" + number +
               "; choose a smaller --size, or plug the camera into a socket of its own.";
    default:
        return "the library failed" + number + "; run the command again with --verbose.";
    }
}

bool Silence::outlasts(std::chrono::microseconds processorTime) {
    idle_ += processorTime - before_ < kMinimumWork ? 1 : 0;
    before_ = processorTime;
    ++all_;
    return idle_ >= kIdleLooks || all_ >= kLooks;
}

std::chrono::microseconds Silence::processorTime() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec));
}

CameraSession::CameraSession(int camera, const Capture& capture, const Interrupt& interrupt)
  : camera_(camera)
  , capture_(capture)
  , interrupt_(interrupt)
  , feed_(FrameFeed::instance()) {
    if (capture.format == Format::kMjpeg) {
        withModules([] { openModule(kMjpegModule); });
    }
    feed_.restart();
    SetVideoFormat(static_cast<int>(capture.format));
    cropToSheet(false);
    if (const int code = openCamera(camera, capture.size.width, capture.size.height);
        code != DOCCAM_OK) {
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
    Silence silence;
    do {
        const int ready = poll(events.data(), events.size(), Silence::kLook.count());
        interrupt_.check();
        feed_.acknowledge();
        failIfEnded();
        if (ready != 0) {
            return;
        }
    } while (!silence.outlasts(Silence::processorTime()));
    throw Failure(kCameraFailed, "Camera " + std::to_string(camera_) +
                                     " sends no frames; unplug it, plug it in again, or run "
                                     "doccam doctor.");
}

void CameraSession::waitFor(std::chrono::milliseconds time) {
    const UniqueFd timer(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    itimerspec end{};
    end.it_value.tv_sec = seconds.count();
    end.it_value.tv_nsec = std::chrono::nanoseconds(time - seconds).count();
    timerfd_settime(timer.get(), 0, &end, nullptr);
    for (itimerspec left = end; left.it_value.tv_sec != 0 || left.it_value.tv_nsec != 0;
         timerfd_gettime(timer.get(), &left)) {
        waitForEvent({timer.get()});
    }
}

// Exceptions must not leave through the callback; without a result the caller fails.
void CameraSession::useNextFrame(const FrameFeed::Listener& use) {
    std::atomic<bool> used{false};
    const Unlistened unlistened{feed_};
    feed_.listen([&](unsigned char* pixels, int width, int height) {
        if (used) {
            return;
        }
        try {
            use(pixels, width, height);
        } catch (const std::exception&) {
        }
        used = true;
    });
    while (!used) {
        waitForEvent();
    }
}

cv::Mat CameraSession::nextFrame() {
    cv::Mat frame;
    useNextFrame([&frame](unsigned char* pixels, int width, int height) {
        frame = cv::Mat(height, width, CV_8UC3, pixels).clone();
    });
    return frame;
}

FrameFile CameraSession::nextFrameFile() {
    constexpr int kAttempts = 3;
    for (int attempt = 0; attempt < kAttempts && capture_.format == Format::kMjpeg; ++attempt) {
        FrameFile frame;
        useNextFrame([&frame](unsigned char* /*pixels*/, int /*width*/, int /*height*/) {
            std::size_t length = 0;
            const unsigned char* const bytes = doccam_frame_bytes(&length);
            frame.assign(bytes, bytes + length);
        });
        if (!decoded(frame).empty()) {
            return frame;
        }
    }
    cv::Mat pixels = nextFrame();
    cv::cvtColor(pixels, pixels, cv::COLOR_RGB2BGR);
    return frameFileOf(pixels);
}

bool CameraSession::findSheet() {
    bool found = false;
    useNextFrame([&found](unsigned char* pixels, int width, int height) {
        found = DrawingEdge(pixels, width, height, 0) == DOCCAM_OK;
    });
    return found;
}

// A still may take longer than the library waits for it. Frames count only once the request is
// certain to have been made, as some may come before.
void CameraSession::still(const std::string& path, bool crop) {
    const Cropped cropped(crop);
    feed_.takeStillFault();
    const bool requested = captureImage(path.c_str()) == DOCCAM_OK;
    const std::uint64_t answered = feed_.frames() + kFramesUntilAnswer;
    interrupt_.check();
    failIfEnded();
    while (requested && !isThere(path) && feed_.frames() < answered) {
        waitForEvent();
    }
    if (!requested || !isThere(path)) {
        failToSave(feed_.takeStillFault());
    }
}

} // namespace doccam::host

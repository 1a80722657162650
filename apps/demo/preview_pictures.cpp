#include "preview_pictures.h"

#include "picture_report.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <condition_variable>
#include <filesystem>
#include <mutex>

namespace demo {
namespace {

constexpr int kFormWidth = 800;
constexpr int kFormHeight = 600;

// After a change of the view: the pictures in work, and the two frames that a turn drops.
constexpr int kSettlingPictures = 4;
constexpr std::chrono::seconds kLongestWait{30};

std::mutex mutex;
std::condition_variable arrived;
int pictures = 0;
cv::Mat latest;

void onPreview(unsigned char* pixels, int width, int height, int /*startX*/, int /*startY*/) {
    {
        const std::lock_guard lock(mutex);
        cv::Mat(height, width, CV_8UC3, pixels).copyTo(latest);
        ++pictures;
    }
    arrived.notify_one();
}

cv::Mat settledPicture() {
    std::unique_lock lock(mutex);
    const int wanted = pictures + kSettlingPictures;
    if (!arrived.wait_for(lock, kLongestWait, [&] { return pictures >= wanted; })) {
        return {};
    }
    return latest.clone();
}

bool write(const std::string& folder, const char* name) {
    const std::string path = (std::filesystem::path(folder) / name).string();
    if (cv::Mat picture = settledPicture(); !picture.empty()) {
        cv::cvtColor(picture, picture, cv::COLOR_RGB2BGR);
        cv::imwrite(path, picture);
    }
    return reportFile(path);
}

void enlargeToDouble() {
    constexpr int kStepsTo200Percent = 25;
    Web_TrueSize();
    for (int step = 0; step < kStepsTo200Percent; ++step) {
        Web_ZoomIn();
    }
}

} // namespace

void watchPreview() {
    SetWebDataCallback(onPreview);
}

bool writePreviews(const std::string& folder) {
    SetWebFormSize(kFormWidth, kFormHeight);
    bool complete = write(folder, "preview-fit.png");
    enlargeToDouble();
    Web_SetMoveOffet(kFormWidth / 2, kFormHeight / 2);
    complete = write(folder, "preview-enlarged.png") && complete;
    Web_RotateR();
    complete = write(folder, "preview-turned.png") && complete;
    Web_RotateL();
    return complete;
}

} // namespace demo

#include "serve/live/sheet_finder.h"

#include "serve/commands/recipes.h"
#include "serve/owned_thread.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace doccam::serve {
namespace {

constexpr int kReducedWidth = 800;
constexpr std::chrono::milliseconds kEvery{67};
constexpr double kPlaces = 1e4; // of fractions: less than a pixel of any window

} // namespace

SheetFinder::SheetFinder(EventFeed& events)
  : events_(events) {
    publish(std::nullopt, {});
    thread_ = ownedThread([this] { run(); });
}

SheetFinder::~SheetFinder() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_one();
}

void SheetFinder::setWanted(bool wanted) {
    {
        const std::lock_guard lock(mutex_);
        wanted_ = wanted;
    }
    if (!wanted) {
        forget();
    }
}

void SheetFinder::forget() {
    const std::lock_guard lock(mutex_);
    fresh_ = true;
    forgotten_ = true;
    given_.release();
    changed_.notify_one();
}

// Takes points instead of means: sides are found in any case, and the stream must not wait.
void SheetFinder::give(unsigned char* pixels, int width, int height) {
    const std::lock_guard lock(mutex_);
    if (!wanted_ || !free_) {
        return;
    }
    const int factor = std::max(1, width / kReducedWidth);
    cv::resize(cv::Mat(height, width, CV_8UC3, pixels), given_, {width / factor, height / factor},
               0, 0, cv::INTER_NEAREST);
    fresh_ = true;
    forgotten_ = false;
    changed_.notify_one();
}

bool SheetFinder::awaitFrame() {
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

void SheetFinder::run() {
    while (awaitFrame()) {
        const auto next = std::chrono::steady_clock::now() + kEvery;
        look();
        std::unique_lock lock(mutex_);
        changed_.wait_until(lock, next, [this] { return closed_; });
    }
}

void SheetFinder::look() try {
    if (!frame_.empty()) {
        cv::cvtColor(frame_, frame_, cv::COLOR_RGB2BGR);
    }
    last_ = frame_.empty() ? std::nullopt : host::findSheetAgain(frame_, last_);
    publish(last_, frame_.size());

} catch (const std::exception&) {

    last_.reset(); // the next picture may work again
}

void SheetFinder::publish(const std::optional<host::FoundSheet>& sheet, cv::Size frame) {
    Json topic;
    if (sheet) {
        topic = {{"corners", inFractions(sheet->corners, frame, kPlaces)},
                 {"confidence", std::round(sheet->confidence * kPlaces) / kPlaces}};
    }
    events_.set("sheet", topic.dump());
}

} // namespace doccam::serve

#include "serve/live/sheet_finder.h"

#include "serve/commands/recipes.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace doccam::serve {
namespace {

constexpr int kReducedWidth = 800;
constexpr std::chrono::milliseconds kEvery{67};
constexpr double kPlaces = 1e4; // of fractions: less than a pixel of any window

// Takes points instead of means: sides are found in any case, and the stream must not wait.
void reduce(const cv::Mat& frame, cv::Mat& reduced) {
    const int factor = std::max(1, frame.cols / kReducedWidth);
    cv::resize(frame, reduced, {frame.cols / factor, frame.rows / factor}, 0, 0, cv::INTER_NEAREST);
}

} // namespace

SheetFinder::SheetFinder(EventFeed& events)
  : events_(events)
  , looks_(kEvery, false, reduce, [this](cv::Mat& frame) { look(frame); }) {
    publish(std::nullopt, {});
}

void SheetFinder::look(cv::Mat& frame) try {
    if (!frame.empty()) {
        cv::cvtColor(frame, frame, cv::COLOR_RGB2BGR);
    }
    last_ = frame.empty() ? std::nullopt : host::findSheetAgain(frame, last_);
    publish(last_, frame.size());

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

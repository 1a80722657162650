#include "serve/live/code_finder.h"

#include "codes/symbology_names.h"
#include "serve/commands/recipes.h"

#include <doccam/codes.h>

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <exception>

namespace doccam::serve {
namespace {

constexpr std::chrono::milliseconds kEvery{250};
constexpr double kSecondsOfAFrame = 0.25; // the next one may be clearer
constexpr double kPlaces = 1e4;
constexpr std::size_t kMaximumCodes = 50;

void reduce(const cv::Mat& frame, cv::Mat& grey) {
    cv::cvtColor(frame, grey, cv::COLOR_RGB2GRAY);
}

} // namespace

Json toJson(const host::Code& code) {
    return {{"kind", host::kindOf(code.symbology)},
            {"symbology", host::nameOf(code.symbology)},
            {"text", code.text},
            {"addon", code.addon}};
}

CodeFinder::CodeFinder(EventFeed& events)
  : events_(events)
  , looks_(kEvery, true, reduce, [this](cv::Mat& frame) { look(frame); }) {
    publish({}, {});
}

void CodeFinder::look(const cv::Mat& frame) try {
    publish(frame.empty() ? std::vector<host::Code>{}
                          : host::codesIn(frame, DOCCAM_SYMBOLOGIES_ALL, kSecondsOfAFrame).codes,
            frame.size());

} catch (const std::exception&) { // the next picture may work again
}

void CodeFinder::publish(const std::vector<host::Code>& codes, cv::Size frame) {
    Json topic;
    if (!frame.empty()) {
        topic = Json::array();
        for (std::size_t i = 0; i < std::min(codes.size(), kMaximumCodes); ++i) {
            topic.push_back(toJson(codes[i]));
            topic.back()["corners"] = inFractions(codes[i].corners, frame, kPlaces);
        }
    }
    events_.set("liveCodes", topic.dump(-1, ' ', false, Json::error_handler_t::replace));
}

} // namespace doccam::serve

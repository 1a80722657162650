#include "documents/paper/paper_json.h"

#include "documents/paper/paper_names.h"

#include <stdexcept>
#include <utility>

namespace doccam::host {
namespace {

using Json = nlohmann::ordered_json;

void require(bool holds) {
    if (!holds) {
        throw std::invalid_argument("no desk");
    }
}

double numberIn(const Json& value, double least, double most) {
    require(value.is_number());
    const auto number = value.get<double>();
    require(number >= least && number <= most);
    return number;
}

int sideIn(const Json& value) {
    constexpr int kLongest = 99999;
    require(value.is_number_integer());
    return static_cast<int>(numberIn(value, 1, kLongest));
}

const Json& pairIn(const Json& value) {
    require(value.is_array() && value.size() == 2);
    return value;
}

Millimetres paperIn(const Json& value) {
    const Json& paper = pairIn(value);
    return {numberIn(paper[0], kShortestSide, kLongestSide),
            numberIn(paper[1], kShortestSide, kLongestSide)};
}

} // namespace

Json asJson(const Desk& desk) {
    Json corners = Json::array();
    for (const cv::Point2d& corner : desk.corners) {
        corners.push_back({corner.x, corner.y});
    }
    return {{"width", desk.frame.width},
            {"height", desk.frame.height},
            {"paper", {desk.paper.width, desk.paper.height}},
            {"corners", std::move(corners)}};
}

Json asJson(const PaperOptions& options) {
    Json object{{"dpi", nullptr}, {"paper", nullptr}};
    if (options.dpi) {
        object["dpi"] = *options.dpi;
    }
    if (options.paper) {
        object["paper"] = {options.paper->width, options.paper->height};
    }
    return object;
}

PaperOptions paperOptionsIn(const Json& value) {
    PaperOptions options;
    if (const Json& dpi = value.at("dpi"); !dpi.is_null()) {
        options.dpi = numberIn(dpi, kLowestDpi, kHighestDpi);
    }
    if (const Json& paper = value.at("paper"); !paper.is_null()) {
        options.paper = paperIn(paper);
    }
    return options;
}

Desk deskIn(const Json& value) {
    constexpr double kFarthest = 1e6;
    Desk desk;
    desk.frame = {sideIn(value.at("width")), sideIn(value.at("height"))};
    desk.paper = paperIn(value.at("paper"));
    const Json& corners = value.at("corners");
    require(corners.is_array() && corners.size() == desk.corners.size());
    for (std::size_t i = 0; i < desk.corners.size(); ++i) {
        const Json& corner = pairIn(corners[i]);
        desk.corners[i] = {numberIn(corner[0], -kFarthest, kFarthest),
                           numberIn(corner[1], -kFarthest, kFarthest)};
    }
    return desk;
}

} // namespace doccam::host

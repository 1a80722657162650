#include "pages/sheet_json.h"

#include <cmath>

namespace doccam::host {
namespace {

double rounded(double value, double steps) {
    return std::round(value * steps) / steps;
}

} // namespace

Json asJson(const std::optional<FoundSheet>& sheet) {
    constexpr double kPerPixel = 100;
    constexpr double kSteps = 1000;
    Json row{{"sheet", nullptr}, {"confidence", nullptr}};
    if (sheet) {
        Json corners = Json::array();
        for (const cv::Point2d& corner : sheet->corners) {
            corners.push_back({rounded(corner.x, kPerPixel), rounded(corner.y, kPerPixel)});
        }
        row["sheet"] = std::move(corners);
        row["confidence"] = rounded(sheet->confidence, kSteps);
    }
    return row;
}

Json asJson(const SizedPage& page) {
    constexpr double kSteps = 100;
    return {{"dpi", rounded(page.dpi, kSteps)},
            {"dpi_from", nameOf(page.from)},
            {"mm", {rounded(page.size.width, kSteps), rounded(page.size.height, kSteps)}}};
}

} // namespace doccam::host

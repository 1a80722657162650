#include "frame_truth.h"

namespace doccam::test {

namespace {

using Json = nlohmann::json;

Json boxOf(const cv::Rect& box) {
    return {box.x, box.y, box.width, box.height};
}

const char* nameOf(virtualcam::RegionKind kind) {
    static const char* const kNames[] = {"picture", "fill", "highlighter"};
    return kNames[static_cast<int>(kind)];
}

Json sheetTruth(const virtualcam::TrueSheet& sheet, const std::string& flatPage) {
    Json corners = Json::array();
    for (const cv::Point2d& corner : sheet.corners) {
        corners.push_back({corner.x, corner.y});
    }
    Json words = Json::array();
    for (const virtualcam::PrintedWord& word : sheet.page.words) {
        words.push_back({{"text", word.text}, {"box", boxOf(word.box)}, {"marked", word.marked}});
    }
    Json regions = Json::array();
    for (const virtualcam::PrintedRegion& region : sheet.page.regions) {
        regions.push_back({{"kind", nameOf(region.kind)}, {"box", boxOf(region.box)}});
    }
    return {{"kind", sheet.kind},
            {"corners", corners},
            {"proportions", sheet.page.millimetres.width / sheet.page.millimetres.height},
            {"cut", sheet.cut},
            {"flat", flatPage},
            {"words", words},
            {"regions", regions}};
}

} // namespace

std::string flatPageName(const virtualcam::DrawnFrame& frame, std::size_t sheet) {
    return frame.category + "-" + std::to_string(frame.seed) + "-flat-" + std::to_string(sheet) +
           ".png";
}

Json truthOf(const virtualcam::DrawnFrame& frame) {
    Json sheets = Json::array();
    for (std::size_t i = 0; i < frame.sheets.size(); ++i) {
        sheets.push_back(sheetTruth(frame.sheets[i], flatPageName(frame, i)));
    }
    return {{"category", frame.category},  {"desk", frame.desk},           {"seed", frame.seed},
            {"width", frame.picture.cols}, {"height", frame.picture.rows}, {"sheets", sheets}};
}

} // namespace doccam::test

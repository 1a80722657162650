// A flat printed page and what is on it.
#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <vector>

namespace doccam::virtualcam {

struct PrintedWord {
    std::string text;
    cv::Rect box;        // in the page's pixels
    bool marked = false; // under highlighter
};

enum class RegionKind { kPicture, kFill, kHighlighter };

struct PrintedRegion {
    RegionKind kind = RegionKind::kPicture;
    cv::Rect box; // in the page's pixels
};

struct PrintedPage {
    cv::Mat picture; // 8-bit sRGB, blue first
    cv::Size2d millimetres;
    std::vector<PrintedWord> words;
    std::vector<PrintedRegion> regions;
};

} // namespace doccam::virtualcam

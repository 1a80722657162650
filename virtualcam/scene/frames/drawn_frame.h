// Frames of every category that the page engine is measured with, and what is true of them.
#pragma once

#include "scene/pages/printed_page.h"
#include "scene/views/camera_view.h"

#include <opencv2/core.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace doccam::virtualcam {

struct TrueSheet {
    std::string kind;
    Quad corners;     // pixels, clockwise from the top left of the upright sheet
    bool cut = false; // one side lies outside of the picture
    PrintedPage page;
};

struct DrawnFrame {
    std::string category;
    std::string desk;
    std::uint64_t seed = 0;
    cv::Mat picture; // 3264 x 2448, 8-bit, blue first
    int jpegQuality = 90;
    std::vector<TrueSheet> sheets; // none on an empty desk
};

const std::vector<std::string>& frameCategories();

// The same frame for the same category and seed. Throws std::invalid_argument for an unknown
// category.
DrawnFrame drawFrame(const std::string& category, std::uint64_t seed);

} // namespace doccam::virtualcam

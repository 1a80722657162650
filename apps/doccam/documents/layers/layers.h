// A page as print apart from its background.
#pragma once

#include <opencv2/core.hpp>

#include <optional>
#include <vector>

namespace doccam::host {

struct Ink {
    cv::Mat mask;     // 8-bit, 255 where there is ink
    cv::Vec3b colour; // blue first
};

struct Layers {
    std::vector<unsigned char> background; // a JPEG, stretched over the page; white paper if empty
    std::vector<Ink> inks;                 // in the order of painting
};

} // namespace doccam::host

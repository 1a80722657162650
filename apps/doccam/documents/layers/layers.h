// A page parted into its print, sharp and of few colours, and a coarse picture of all else, which
// together take far less space than a picture of the page.
#pragma once

#include <opencv2/core.hpp>

#include <optional>
#include <vector>

namespace doccam::host {

// Print of one colour. Its mask is stretched over the page.
struct Ink {
    cv::Mat mask;     // 8-bit, 255 where there is ink; all masks of a page have one size
    cv::Vec3b colour; // blue first
};

struct Layers {
    std::vector<unsigned char> background; // a JPEG, stretched over the page; white paper if empty
    std::vector<Ink> inks;                 // in the order of painting
};

// The layers of an 8-bit page, grey or blue first, of dpi pixels per inch. None if the page is a
// photograph, if it is too coarse for sharp print (below 120) or would not get smaller than as a
// JPEG, or as CCITT G4 if it is black and white, and for a picture of another type. Pages whose
// lines of print run along their rows come out sharpest, as their masks encode smallest.
std::optional<Layers> splitLayers(const cv::Mat& page, double dpi);

} // namespace doccam::host

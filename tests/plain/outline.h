// The search for the sheet's outline, step by step.
#pragma once

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>

#include <array>
#include <vector>

namespace doccam::plain {

// What the search leaves behind.
struct Outline {
    int result = 0;              // as DrawingEdge returns it
    std::vector<int> areas = {}; // of what is large enough for a sheet
    std::array<int, 8> corners = {};
};

// A quarter as wide and high, grey. frame is red first.
cv::Mat reducedGrey(const cv::Mat& frame);

// Grey freed of its slow changes.
cv::Mat lifted(const cv::Mat& grey);

// Searches the red-first frame, and draws the outline into it when draw is 1.
Outline drawEdge(cv::Mat& frame, int draw);

} // namespace doccam::plain

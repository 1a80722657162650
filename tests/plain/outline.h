// The search for the sheet's outline, step by step.
#pragma once

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>

#include <array>
#include <vector>

namespace doccam::plain {

// The result of the search.
struct Outline {
    int result = 0;              // as DrawingEdge returns it
    std::vector<int> areas = {}; // of the regions large enough for a sheet
    std::array<int, 8> corners = {};
};

// frame, red first, as grey at a quarter of its width and height.
cv::Mat reducedGrey(const cv::Mat& frame);

// Grey with its slow variation removed.
cv::Mat flatFielded(const cv::Mat& grey);

// Searches the red-first frame, and draws the outline into it when draw is 1.
Outline drawEdge(cv::Mat& frame, int draw);

} // namespace doccam::plain

// What the page engine makes of a frame, measured against its truth.
#pragma once

#include "reading.h"
#include "scene/frames/drawn_frame.h"

#include <opencv2/core/mat.hpp>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace doccam::test {

// In the order of DoccamColour: colour, grey, black and white.
using Readings = std::array<Reading, 3>;

struct SheetMeasures {
    std::string kind;
    double overlap = 0;                // intersection over union; 0 for a sheet that was not found
    std::optional<double> proportions; // relative error; none for cut sheets
    std::optional<Readings> readings;
    std::vector<double> fills;    // delta E 2000 of each fill and highlighter
    std::vector<double> pictures; // structural similarity lost by the paper look, of each picture
};

struct FrameMeasures {
    std::string name;
    std::vector<SheetMeasures> sheets;
    int extra = 0; // sheets found where none lie
};

// picture is what the camera sent of frame. The pages' words are read if reads; pages are written
// into the folder keep unless it is empty.
FrameMeasures measure(const virtualcam::DrawnFrame& frame, const cv::Mat& picture, bool reads,
                      const std::string& keep);

} // namespace doccam::test

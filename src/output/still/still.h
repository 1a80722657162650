// A still: the page that a frame gives, and its saving.
#pragma once

#include "state/parts.h"

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam {

struct Still {
    std::string path;
    cv::Mat page; // blue first
    bool ofWholeFrame = false;
};

// The red-first frame as the page to be saved at path: the sheet when cropMode says so, else the
// whole frame. Throws cv::Exception when a sheet's corners give no region of the frame. Streaming
// thread.
Still prepareStill(std::string path, int cropMode, const cv::Mat& frame, LibraryState& library);

// Saves it as savePage() does. Uses nothing of the session.
void saveStill(const Still& still, const record::Settings& settings);

} // namespace doccam

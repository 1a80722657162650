// A still: making a page from a frame, and saving it.
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

// Makes the page to be saved at path of the red-first frame, cropped by cropMode. Throws
// cv::Exception if the sheet's corners give no region of the frame. Streaming thread.
Still prepareStill(std::string path, int cropMode, const cv::Mat& frame, LibraryState& library);

// Saves it with savePage(). Uses nothing of the session.
void saveStill(const Still& still, const record::Settings& settings);

} // namespace doccam

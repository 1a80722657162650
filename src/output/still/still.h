// A still: making a page from a frame, and saving it.
#pragma once

#include "page/sheet.h"
#include "state/parts.h"

#include <opencv2/core/mat.hpp>

#include <string>

namespace doccam {

struct Still {
    std::string path;
    cv::Mat page; // blue first
    bool ofWholeFrame = false;
    bool isInColourMode = false; // an empty page is then not saved
};

// Makes the page to be saved at path of the red-first frame, cropped by cropMode. Throws
// cv::Exception if the sheet's corners give no region of the frame. live is the sheet that the page
// engine has outlined, if any. Streaming thread.
Still prepareStill(std::string path, int cropMode, const cv::Mat& frame, LibraryState& library,
                   const page::Sheet* live = nullptr);

// Saves it with savePage() or savePicture(). Uses nothing of the session.
void saveStill(const Still& still, const record::Settings& settings);

} // namespace doccam

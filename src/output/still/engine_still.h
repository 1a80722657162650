// Stills by the page engine.
#pragma once

#include "output/still/still.h"

namespace doccam {

struct EngineStillOptions {
    const record::Settings& settings;
    bool enlarge = false;              // whole frames
    const page::Sheet* live = nullptr; // the sheet outlined last
};

// Makes the page of the red-first frame, in the set colour mode: of its sheet for kCropToSheet if
// there is one, else of the whole frame. Either cleaning setting gives it the paper look, as black
// and white always does.
Still engineStill(std::string path, int cropMode, const cv::Mat& frame,
                  const EngineStillOptions& options);

} // namespace doccam

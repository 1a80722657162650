// The library's page engine, called with this host's types.
#pragma once

#include "pages/recipe.h"

#include <doccam/page.h>

#include <opencv2/core/mat.hpp>

#include <memory>

namespace doccam::host {

struct FreePage {
    void operator()(DoccamPage* page) const { doccam_page_free(page); }
};

using Page = std::unique_ptr<DoccamPage, FreePage>;

// The frame's pixels, not copied. It is 8-bit, blue first or grey.
DoccamImage imageOf(const cv::Mat& frame);

// The sheet with these corners, of no confidence.
DoccamSheet sheetAt(const SheetCorners& corners);

// Whether they are those of a sheet: none that cross.
bool isSound(const SheetCorners& corners);

// Throws Failure for a result below 0.
void failUnlessDone(int result);

} // namespace doccam::host

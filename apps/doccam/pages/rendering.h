// From a frame and a recipe to a page.
#pragma once

#include "pages/page_engine.h"
#include "pages/recipe.h"

#include <opencv2/core/mat.hpp>

#include <string>
#include <vector>

namespace doccam::host {

// The page of the blue-first or grey frame. In black and white it has one bit per pixel. Throws
// Failure if there is not enough memory.
Page renderPage(const cv::Mat& frame, const Recipe& recipe);

// The page's pixels as 8-bit grey or blue first; those of bits are copied, others not.
cv::Mat greyOrColour(const DoccamPage& page);

// A file of the type of name's extension; a page of bits is a PNG whatever that is. quality is for
// a JPEG. Throws like encodePicture().
std::vector<unsigned char> encodePage(const std::string& name, const DoccamPage& page, int quality);

} // namespace doccam::host

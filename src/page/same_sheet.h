// Recognizing a sheet from picture to picture.
#pragma once

#include "page/sheet.h"

#include <vector>

namespace doccam::page {

// The one of sheets, which are not empty, that lies where last lay in an earlier picture of that
// size; the first if none does.
const Sheet& sameSheet(const std::vector<Sheet>& sheets, const Sheet& last, cv::Size picture);

} // namespace doccam::page

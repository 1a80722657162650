// A printed sheet with codes, alone or between lines of text.
#pragma once

#include "code_kinds.h"

#include <opencv2/core.hpp>

#include <vector>

namespace doccam::test {

inline constexpr int kSheetModule = 8; // pixels of a module on the sheet

struct SheetPlan {
    cv::Size least = {}; // pixels; the sheet is larger if the codes need it
    double aspect = 1;   // width divided by height that the codes should have together
    double turn = 0;     // degrees, by which each code is turned at random at most
    bool text = false;   // around the codes
    bool inverted = false;
};

struct CodeSheet {
    cv::Mat picture; // 8-bit, blue first
    cv::Size codes;  // the part in the middle that the codes take
};

CodeSheet printSheet(const std::vector<PrintedCode>& codes, const SheetPlan& plan, cv::RNG& random);

} // namespace doccam::test

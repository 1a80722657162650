// The readers: a grey picture in, everything that they see out.
//
// Any thread. The picture's pixels are only read. Texts are in the form that is common to both: a
// UPC-A has 12 digits, a UPC-E 8, a DataBar its application identifier 01; add-ons are apart.
#pragma once

#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>

namespace doccam::codes {

// What zxing tries; zbar has no choice.
enum class Effort {
    kFull,   // every direction, and a reduced picture beside the given one
    kUpright // as the picture is, and upside down
};

// How zxing parts ink from paper.
enum class Threshold {
    kLocal, // around each part of the picture
    kGlobal,
    kGiven // at the middle of the grey levels
};

struct ReadingMode {
    Effort effort = Effort::kFull;
    Threshold threshold = Threshold::kLocal;
    int lines = 2;               // scan lines that must agree on a linear code
    bool addonsRequired = false; // codes of goods with add-ons alone
};

Sightings readWithZbar(const cv::Mat& grey, SymbologySet wanted);
Sightings readWithZxing(const cv::Mat& grey, SymbologySet wanted, ReadingMode mode = {});

} // namespace doccam::codes

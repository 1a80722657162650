// The codes of a picture, also of the sheets in it.
#pragma once

#include <opencv2/core/mat.hpp>

#include <array>
#include <string>
#include <vector>

namespace doccam::host {

struct Code {
    int symbology = 0;                    // one of DoccamSymbology
    std::string text;                     // in UTF-8
    std::string bytes;                    // as encoded
    std::string addon;                    // empty for none
    std::array<cv::Point2d, 4> corners{}; // clockwise from the code's own top left, in pixels
};

struct CodesFound {
    std::vector<Code> codes;
    bool complete = true; // false if the time was too short to try everything
};

// The codes in an 8-bit grey picture whose symbologies are in the set, within about that many
// seconds. Throws Failure if there is not enough memory.
CodesFound codesIn(const cv::Mat& grey, unsigned symbologies, double seconds);

// The codes of the sheets in the picture that are not among the known ones, read on sheets made
// upright. If some are known, only in pictures of a megapixel or more, and on sheets seen at an
// angle. Otherwise as codesIn().
CodesFound codesOnSheets(const cv::Mat& grey, const std::vector<Code>& known, unsigned symbologies,
                         double seconds);

} // namespace doccam::host

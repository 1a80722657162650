// Codes of a picture as a host reads them.
#pragma once

#include <doccam/codes.h>

#include <opencv2/core/mat.hpp>

#include <array>
#include <iosfwd>
#include <string>
#include <vector>

namespace doccam::test {

struct ReadCode {
    int symbology = 0;
    std::string text;
    std::string bytes;
    std::string addon;
    std::array<cv::Point2d, 4> corners{};
};

void PrintTo(const ReadCode& code, std::ostream* out);

struct PictureRead {
    std::vector<ReadCode> codes;
    bool complete = false;
};

// Of an 8-bit picture, grey or blue first. Fails the test if the library refuses it.
PictureRead readPicture(const cv::Mat& picture, unsigned symbologies = DOCCAM_SYMBOLOGIES_ALL,
                        double seconds = 10);

// "symbology: text" or "symbology: text + add-on" for each, sorted.
std::vector<std::string> readTexts(const cv::Mat& picture,
                                   unsigned symbologies = DOCCAM_SYMBOLOGIES_ALL,
                                   double seconds = 10);

} // namespace doccam::test

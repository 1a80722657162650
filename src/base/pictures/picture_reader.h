// One picture file being read, whatever its type.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstdio>

namespace doccam {

class PictureReader {
  public:
    virtual ~PictureReader() = default;

    // What the file announces, for a reduction to 1 / denominator where the type can do it.
    struct Header {
        cv::Size size;
        int type = CV_8UC3; // the pixels as they are, CV_8UC1 to CV_16UC4
        bool isReduced = false;
    };

    // Reads the header from the file's start; false if it is damaged. Call once.
    virtual bool readHeader(int denominator, Header& header) = 0;

    // Fills picture, of the header's size, and of any number of channels and depth that
    // cv::imread makes of the header's. False if the pixels are damaged. Call once.
    virtual bool readPixels(cv::Mat& picture) = 0;

    // Of the file's Exif data; 1 if it has none. After readPixels().
    virtual int orientation() const = 0;
};

} // namespace doccam

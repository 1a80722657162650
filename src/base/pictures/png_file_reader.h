// Reading PNG files with libpng, pixel for pixel like OpenCV.
#pragma once

#include "base/pictures/picture_reader.h"

#include <png.h>

#include <vector>

namespace doccam {

class PngFileReader : public PictureReader {
  public:
    // file must outlive the object.
    explicit PngFileReader(std::FILE* file);

    ~PngFileReader() override;
    PngFileReader(const PngFileReader&) = delete;
    PngFileReader& operator=(const PngFileReader&) = delete;

    bool readHeader(int denominator, Header& header) override;
    bool readPixels(cv::Mat& picture) override;
    int orientation() const override;

  private:
    int typeOfPixels() const;
    void chooseDepth(const cv::Mat& picture);
    void chooseColours(int channels);
    bool readRows(const cv::Mat& picture);

    std::FILE* file_;
    png_structp png_;
    png_infop info_;
    png_infop end_;
    std::vector<png_bytep> rows_;
};

} // namespace doccam

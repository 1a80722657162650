// Reading JPEG files with libjpeg, pixel for pixel like OpenCV.
#pragma once

#include "base/handles/libjpeg.h"
#include "base/pictures/picture_reader.h"

#include <csetjmp>
#include <span>
#include <vector>

namespace doccam {

class JpegFileReader : public PictureReader {
  public:
    // Of a file, at whose end libjpeg supplies an end marker. It must outlive the object.
    explicit JpegFileReader(std::FILE* file);

    // Of bytes, after which nothing comes, as OpenCV decodes them. They must outlive the object.
    explicit JpegFileReader(std::span<const unsigned char> bytes);

    ~JpegFileReader() override;
    JpegFileReader(const JpegFileReader&) = delete;
    JpegFileReader& operator=(const JpegFileReader&) = delete;

    bool readHeader(int denominator, Header& header) override;
    bool readPixels(cv::Mat& picture) override;

    int orientation() const override { return orientation_; }

  private:
    static void onError(j_common_ptr jpeg);

    void reportByJumps();

    void chooseColours(bool colour);
    bool readRows(cv::Mat& picture);
    int orientationInMarkers() const;

    std::FILE* file_ = nullptr;
    jpeg_source_mgr bytes_{};
    jpeg_error_mgr errors_{};
    jpeg_decompress_struct jpeg_{};
    std::jmp_buf failed_{};
    bool allRead_ = false;
    int orientation_ = 1;
    std::vector<unsigned char> inkRow_; // of a picture in CMYK
};

} // namespace doccam

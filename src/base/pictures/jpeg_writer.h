// Encoding JPEG files like OpenCV, but passing rows to libjpeg as they are, where OpenCV first
// converts each to red first.
#pragma once

#include <opencv2/core/mat.hpp>

#include <optional>
#include <vector>

namespace doccam {

enum class JpegCoding {
    kUsual,   // as OpenCV does
    kSmallest // progressive, with the picture's own tables: the same pixels in fewer bytes
};

// The file's bytes, equal to OpenCV's with the usual coding. quality is clamped to 0 to 100.
// picture must be 8-bit with one channel, three, or four of which the last does not count, blue
// first; none for others, and for a picture too large for a JPEG.
std::optional<std::vector<unsigned char>> jpegOf(const cv::Mat& picture, int quality,
                                                 JpegCoding coding = JpegCoding::kUsual);

} // namespace doccam

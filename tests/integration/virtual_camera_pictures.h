// Picture files for the tests of the virtual camera.
#pragma once

#include "picture/jpeg.h"

#include <opencv2/core.hpp>
#include <png.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace doccam::test {

inline void writeBytes(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

inline void writeJpeg(const std::string& path, const cv::Mat& picture) {
    writeBytes(path, virtualcam::encodeJpeg(picture, 97));
}

inline void writePng(const std::string& path, const cv::Mat& picture) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.cols);
    image.height = static_cast<png_uint_32>(picture.rows);
    image.format = PNG_FORMAT_BGR;
    png_image_write_to_file(&image, path.c_str(), 0, picture.data, 0, nullptr);
}

} // namespace doccam::test

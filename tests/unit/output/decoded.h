// Image files read by libjpeg, libpng and libtiff themselves, not by OpenCV, which wrote them.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace doccam::test {

using Pixel = std::array<int, 3>; // red, green, blue

struct Decoded {
    int width = 0;
    int height = 0;
    int channels = 0; // as stored in the file
    std::vector<Pixel> pixels;
    int firstQuantizer = 0; // JPEG only: the divisor of the luminance mean

    Pixel at(int x, int y) const { return pixels.at(static_cast<std::size_t>(y * width + x)); }
};

// Each fails the test and returns an empty picture when the file is not of its format.
Decoded readJpeg(const std::string& path);
Decoded readPng(const std::string& path);
Decoded readBmp(const std::string& path); // 24 bits a pixel

std::string readText(const std::string& path);
void writeText(const std::string& path, const std::string& text);

} // namespace doccam::test

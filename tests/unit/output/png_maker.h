// PNG files of every kind, made by hand.
#pragma once

#include <png.h>

#include <string>
#include <vector>

namespace doccam::test {

struct PngKind {
    int colour = PNG_COLOR_TYPE_RGB;
    int depth = 8;
    int interlace = PNG_INTERLACE_NONE;
    std::vector<png_color> palette = {};
    std::vector<png_byte> opacities = {}; // alpha of the first palette entries
};

// The file's bytes. Each row is given as the format stores it: samples packed, high bytes first.
std::string makePng(int width, const PngKind& kind, const std::vector<std::string>& rows);

// A width x height picture in one colour.
std::string makeRgbPng(int width, int height, png_color colour = {200, 100, 50});

// file with a text chunk of wrong checksum after its header, which earns only a warning.
std::string withBadRemark(const std::string& file);

// file with the start of a text chunk after its header that claims that many bytes.
std::string withRemarkOfLength(const std::string& file, unsigned bytes);

} // namespace doccam::test

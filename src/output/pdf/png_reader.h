// Reading a PNG to the last byte, so that damage is noticed.
#pragma once

#include <png.h>

#include <span>
#include <vector>

namespace doccam {

class PngReader {
  public:
    // file must outlive the reader.
    explicit PngReader(std::span<const unsigned char> file);
    ~PngReader();
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    // Reads up to the pixels. False if the file is not a valid PNG.
    bool readHeader();

    unsigned width() const { return width_; }

    unsigned height() const { return height_; }

    // Reads the pixels and the end. Call after readHeader(). False if anything is missing or
    // damaged.
    bool readPixels();

    // Whether libharu's own PNG reader, which also treats warnings as errors, can read the file.
    // Call after readPixels().
    bool isPlain() const { return plain_; }

    // Samples per pixel of pixels(): 1 grey, 3 red, green and blue.
    unsigned channels() const { return channels_; }

    // The picture with 8 bits per sample, rows back to back.
    const std::vector<unsigned char>& pixels() const { return pixels_; }

    // The alpha of each pixel; empty for an opaque picture.
    const std::vector<unsigned char>& alpha() const { return alpha_; }

  private:
    static void onError(png_structp png, png_const_charp message);
    static void onWarning(png_structp png, png_const_charp message);
    static void onRead(png_structp png, png_bytep data, std::size_t length);
    bool askForBytes();
    bool readRows();
    void splitAlpha(unsigned samples);

    std::span<const unsigned char> rest_;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
    unsigned width_ = 0;
    unsigned height_ = 0;
    unsigned channels_ = 0;
    bool plain_ = true;
    std::vector<unsigned char> pixels_;
    std::vector<unsigned char> alpha_;
    std::vector<png_bytep> rows_;
};

} // namespace doccam

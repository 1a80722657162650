// Reads a PNG to the last byte, so that a damaged one is noticed.
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

    // Reads up to the pixels. False when the file is no sound PNG.
    bool readHeader();

    unsigned width() const { return width_; }

    unsigned height() const { return height_; }

    // Reads the pixels and the end; after readHeader. False when something is missing or damaged.
    bool readPixels();

    // True when libharu's own PNG reader, which also takes every warning for an error, can
    // be given the file. After readPixels.
    bool isPlain() const { return plain_; }

    // Samples a pixel of pixels(): 1 grey, 3 red-green-blue.
    unsigned channels() const { return channels_; }

    // The picture with 8 bits a sample, rows back to back.
    const std::vector<unsigned char>& pixels() const { return pixels_; }

    // The opacity of each pixel; empty for an opaque picture.
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

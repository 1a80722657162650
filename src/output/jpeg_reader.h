// Reads a JPEG to the last byte, so that a damaged one is noticed.
#pragma once

#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <span>
#include <vector>

// clang-format off: this header needs <cstdio> and <cstddef> before it
#include <jpeglib.h>

// clang-format on

namespace doccam {

class JpegReader {
  public:
    // file must outlive the reader.
    explicit JpegReader(std::span<const unsigned char> file);
    ~JpegReader();
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    // Reads up to the pixels. False when the file is no sound JPEG.
    bool readHeader();

    unsigned width() const { return jpeg_.image_width; }

    unsigned height() const { return jpeg_.image_height; }

    // Reads the whole picture and drops it; after readHeader. False when part of it is missing or
    // damaged.
    bool readPixels();

  private:
    static void onError(j_common_ptr jpeg);
    static void onMessage(j_common_ptr jpeg, int level);

    std::span<const unsigned char> file_;
    jpeg_error_mgr errors_{};
    jpeg_decompress_struct jpeg_{};
    std::jmp_buf failed_{};
    bool damaged_ = false;
    std::vector<unsigned char> row_;
};

} // namespace doccam

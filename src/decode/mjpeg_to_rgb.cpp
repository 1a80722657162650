// Decodes a JPEG in memory row by row with libjpeg, whose errors jump back here: nothing between
// the jump's ends may have a destructor.
#include "decode/jpeg_error_exit.h"

#include <doccam/doccam.hpp>

#include <opencv2/core.hpp>

#include <cstdlib>
#include <cstring>

namespace {

constexpr int kPixelBytes = 3;
constexpr int kPixelBits = 8 * kPixelBytes;

enum class Finish { kDestroy, kFinishAndDestroy };

struct Session {
    jpeg_decompress_struct decompressor;
    doccam::JpegErrors errors;
    unsigned char* row;
};

// Why the picture cannot be written to out, or null.
const char* obstacle(const jpeg_decompress_struct& picture, const cv::Mat& out) {
    if (picture.output_components != kPixelBytes) {
        return "The JPEG does not have three components.";
    }
    if (out.data == nullptr || !out.isContinuous() || out.type() != CV_8UC3) {
        return "The output is not a continuous image of 8-bit pixels with three channels.";
    }
    if (picture.output_width > static_cast<unsigned>(out.cols) ||
        picture.output_height > static_cast<unsigned>(out.rows)) {
        return "The JPEG is larger than the output.";
    }
    return nullptr;
}

int abandon(Session& session) {
    jpeg_destroy_decompress(&session.decompressor);
    std::free(session.row);
    return -1;
}

void readRows(Session& session, unsigned char* target) {
    jpeg_decompress_struct& picture = session.decompressor;
    const int width = static_cast<int>(picture.output_width);
    while (picture.output_scanline < picture.output_height) {
        jpeg_read_scanlines(&picture, &session.row, 1);
        CovertOneLine(width, kPixelBits, kPixelBits, session.row, target);
        target += static_cast<std::ptrdiff_t>(width) * kPixelBytes;
    }
}

// The session belongs to the caller, so that its values are certain after a jump.
int decode(Session& session, unsigned char* data, unsigned long size, cv::Mat& out, Finish finish) {
    jpeg_decompress_struct& picture = session.decompressor;
    picture.err = jpeg_std_error(&session.errors.manager);
    picture.err->error_exit = MyErrorExit;
    if (setjmp(session.errors.escape) != 0) {
        return abandon(session);
    }
    jpeg_create_decompress(&picture);
    jpeg_mem_src_tj(&picture, data, size);
    jpeg_read_header(&picture, TRUE);
    picture.scale_num = 1;
    picture.scale_denom = 1;
    jpeg_calc_output_dimensions(&picture);
    if (const char* reason = obstacle(picture, out)) {
        std::puts(reason);
        return abandon(session);
    }
    jpeg_start_decompress(&picture);
    session.row =
        static_cast<unsigned char*>(std::malloc(std::size_t{picture.output_width} * kPixelBytes));
    if (session.row == nullptr) {
        return -1;
    }
    readRows(session, out.data);
    std::free(session.row);
    session.row = nullptr;
    if (finish == Finish::kFinishAndDestroy) {
        jpeg_finish_decompress(&picture);
    }
    jpeg_destroy_decompress(&picture);
    return 0;
}

int decodeFrame(unsigned char* data, std::int32_t length, cv::Mat& out, Finish finish) {
    Session session{};
    const auto size = static_cast<unsigned long>(length > 0 ? length : 0);
    return decode(session, data, size, out, finish);
}

} // namespace

int CovertOneLine(int width, int bitsPerPixel, int /*third*/, unsigned char* src,
                  unsigned char* dst) {
    if (bitsPerPixel != kPixelBits) {
        return -1;
    }
    if (width > 0) {
        std::memcpy(dst, src, static_cast<std::size_t>(width) * kPixelBytes);
    }
    return 0;
}

int Mjpeg2RgbConvert(VideoBuf* frame, cv::Mat& out) {
    const VideoBuf view = frame != nullptr ? *frame : VideoBuf{};
    return decodeFrame(view.start, view.length, out, Finish::kFinishAndDestroy);
}

int Mjpeg2RgbConvertEx(unsigned char* data, int length, cv::Mat& out) {
    return decodeFrame(data, length, out, Finish::kDestroy);
}

// libjpeg's errors jump back here: nothing in between may have a destructor.
#include "decode/mjpeg_to_rgb.h"

#include "base/pixel.h"
#include "decode/jpeg_memory_source.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace doccam {
namespace {

struct Session {
    jpeg_decompress_struct decompressor;
    JpegErrors errors;
    unsigned char* row;
};

// The reason why the picture cannot be written to out, or null.
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
        copyRow(session.row, width, target);
        target += static_cast<std::ptrdiff_t>(width) * kPixelBytes;
    }
}

// The caller owns session, so that its values are defined after a jump.
int decode(Session& session, std::span<const unsigned char> data, cv::Mat& out, Finish finish) {
    jpeg_decompress_struct& picture = session.decompressor;
    picture.err = jpeg_std_error(&session.errors.manager);
    picture.err->error_exit = exitOnJpegError;
    if (setjmp(session.errors.escape) != 0) {
        return abandon(session);
    }
    jpeg_create_decompress(&picture);
    readFromMemory(&picture, data);
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

} // namespace

int decodeJpeg(unsigned char* data, int length, cv::Mat& out, Finish finish) {
    Session session{};
    return decode(session, {data, static_cast<std::size_t>(std::max(length, 0))}, out, finish);
}

void copyRow(const unsigned char* pixels, int count, unsigned char* target) {
    if (count > 0) {
        std::memcpy(target, pixels, static_cast<std::size_t>(count) * kPixelBytes);
    }
}

} // namespace doccam

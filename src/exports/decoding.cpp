// Decoding frames.
#include "decode/jpeg_memory_source.h"
#include "decode/mjpeg_frames.h"
#include "decode/mjpeg_to_rgb.h"
#include "decode/yuyv_to_rgb.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

using doccam::state;

void av_decode_init() {
    doccam::createDecoder(state().session.pdecode);
}

void av_decode_deinit() {
    doccam::releaseDecoder(state().session.pdecode);
}

void do_excute_image(unsigned char* data, int length, int width, int height, cv::Mat& out,
                     cv::Mat& /*spare*/) {
    if (data != nullptr && length > 0) {
        const auto bytes = static_cast<std::size_t>(length);
        doccam::decodeInto(state().session.pdecode,
                           {.data = {data, bytes}, .wanted = {width, height}}, out);
    }
}

int Mjpeg2RgbConvert(VideoBuf* frame, cv::Mat& out) {
    const VideoBuf view = frame != nullptr ? *frame : VideoBuf{};
    return doccam::decodeJpeg(view.start, view.length, out, doccam::Finish::kFinishAndDestroy);
}

int Mjpeg2RgbConvertEx(unsigned char* data, int length, cv::Mat& out) {
    return doccam::decodeJpeg(data, length, out, doccam::Finish::kDestroy);
}

void jpeg_mem_src_tj(jpeg_decompress_struct* cinfo, unsigned char* buffer, unsigned long size) {
    doccam::readFromMemory(cinfo, {buffer, size},
                           {.begin = init_mem_source,
                            .fill = fill_mem_input_buffer,
                            .skip = skip_input_data,
                            .end = term_source});
}

void init_mem_source(jpeg_decompress_struct* /*cinfo*/) {}

int fill_mem_input_buffer(jpeg_decompress_struct* cinfo) {
    return doccam::serveEndOfImage(cinfo);
}

void skip_input_data(jpeg_decompress_struct* cinfo, long count) {
    doccam::skipInput(cinfo, count);
}

void term_source(jpeg_decompress_struct* /*cinfo*/) {}

void MyErrorExit(jpeg_common_struct* cinfo) {
    doccam::exitOnJpegError(cinfo);
}

int CovertOneLine(int width, int bitsPerPixel, int /*third*/, unsigned char* src,
                  unsigned char* dst) {
    constexpr int kPixelBits = 24;
    if (bitsPerPixel != kPixelBits) {
        return -1;
    }
    doccam::copyRow(src, width, dst);
    return 0;
}

void yuyv_to_rgb888(unsigned char* src, unsigned char* dst, int width, int height) {
    doccam::convertYuyv(src, dst, width, height);
}

// Decoding frames, from the driver's bytes to pixels. Images are 8-bit with three channels.
#pragma once

#include "doccam.h"

#include <opencv2/core/mat.hpp>

#include <cstdint>

struct jpeg_common_struct;
struct jpeg_decompress_struct;

// --- MJPEG through libav -------------------------------------------------------------------------

// Creates the process-wide MJPEG decoder; does nothing if it exists. Host thread, while no camera
// streams.
DOCCAM_API void av_decode_init();

// Releases the decoder, if there is one. Must not be called while a frame is being decoded.
DOCCAM_API void av_decode_deinit();

// Decodes one JPEG of length bytes into out, red first. out must be allocated as width x height and
// continuous; a picture of another size is scaled. On failure out is unchanged. spare is unused.
DOCCAM_API void do_excute_image(unsigned char* data, int length, int width, int height,
                                cv::Mat& out, cv::Mat& spare);

// --- JPEG from memory ----------------------------------------------------------------------------

// A frame in the host's memory, and its size in bytes.
struct VideoBuf {
    unsigned char* start;
    std::int32_t length;
};

// Decodes the colour JPEG into out, red first. out must be allocated, continuous and at least as
// large. Returns 0 on success, also for truncated data; -1 on failure, with one line on standard
// output.
DOCCAM_API int Mjpeg2RgbConvert(VideoBuf* frame, cv::Mat& out);
DOCCAM_API int Mjpeg2RgbConvertEx(unsigned char* data, int length, cv::Mat& out);

// A libjpeg source over size bytes of memory, and its callbacks.
DOCCAM_API void jpeg_mem_src_tj(jpeg_decompress_struct* cinfo, unsigned char* buffer,
                                unsigned long size);
DOCCAM_API void init_mem_source(jpeg_decompress_struct* cinfo);
DOCCAM_API int fill_mem_input_buffer(jpeg_decompress_struct* cinfo);
DOCCAM_API void skip_input_data(jpeg_decompress_struct* cinfo, long count);
DOCCAM_API void term_source(jpeg_decompress_struct* cinfo);

// A libjpeg error exit: prints the pending message and jumps to the jump buffer that follows the
// error manager in memory.
DOCCAM_API void MyErrorExit(jpeg_common_struct* cinfo);

// Copies width pixels of three bytes from src to dst. Returns 0; or -1, without copying, if
// bitsPerPixel is not 24. The third argument is unused.
DOCCAM_API int CovertOneLine(int width, int bitsPerPixel, int third, unsigned char* src,
                             unsigned char* dst);

// --- YUYV ----------------------------------------------------------------------------------------

// Converts width x height pixels of packed YUYV to three bytes per pixel, red first except for the
// first two pixels, which are blue first. Reads 4 and writes 6 bytes past the frame's end.
DOCCAM_API void yuyv_to_rgb888(unsigned char* src, unsigned char* dst, int width, int height);

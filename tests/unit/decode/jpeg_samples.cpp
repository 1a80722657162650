#include "jpeg_samples.h"

#include <cstdio>
#include <cstdlib>
#include <random>

extern "C" {
#include <jpeglib.h>
}

namespace doccam::test {

std::string nameOf(Sampling sampling) {
    switch (sampling) {
    case Sampling::k444:
        return "Colour444";
    case Sampling::k422:
        return "Colour422";
    case Sampling::k420:
        return "Colour420";
    case Sampling::kGrey:
        return "Grey";
    }
    return {};
}

cv::Mat samplePicture(int width, int height, int seed) {
    cv::Mat picture(height, width, CV_8UC3);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int red = 40 + 180 * x / width;
            const int green = 30 + 190 * y / height;
            const int blue = 220 - 90 * x / width - 90 * y / height;
            picture.at<cv::Vec3b>(y, x) =
                cv::Vec3b(static_cast<uchar>((red + seed) % 256),
                          static_cast<uchar>((green + 2 * seed) % 256), static_cast<uchar>(blue));
        }
    }
    return picture;
}

Bytes jpegOf(const cv::Mat& picture, Sampling sampling) {
    jpeg_compress_struct encoder{};
    jpeg_error_mgr errors{};
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&encoder, &memory, &size);
    encoder.image_width = static_cast<JDIMENSION>(picture.cols);
    encoder.image_height = static_cast<JDIMENSION>(picture.rows);
    encoder.input_components = 3;
    encoder.in_color_space = JCS_RGB;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, 95, TRUE);
    if (sampling == Sampling::kGrey) {
        jpeg_set_colorspace(&encoder, JCS_GRAYSCALE);
    } else {
        encoder.comp_info[0].h_samp_factor = sampling == Sampling::k444 ? 1 : 2;
        encoder.comp_info[0].v_samp_factor = sampling == Sampling::k420 ? 2 : 1;
    }
    jpeg_start_compress(&encoder, TRUE);
    while (encoder.next_scanline < encoder.image_height) {
        auto* row = const_cast<JSAMPROW>(picture.ptr(static_cast<int>(encoder.next_scanline)));
        jpeg_write_scanlines(&encoder, &row, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
    Bytes jpeg(memory, memory + size);
    std::free(memory);
    return jpeg;
}

cv::Mat plainlyDecoded(const Bytes& jpeg) {
    jpeg_decompress_struct decoder{};
    jpeg_error_mgr errors{};
    decoder.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decoder);
    jpeg_mem_src(&decoder, jpeg.data(), jpeg.size());
    jpeg_read_header(&decoder, TRUE);
    decoder.out_color_space = JCS_RGB;
    jpeg_start_decompress(&decoder);
    cv::Mat picture(static_cast<int>(decoder.output_height), static_cast<int>(decoder.output_width),
                    CV_8UC3);
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW row = picture.ptr(static_cast<int>(decoder.output_scanline));
        jpeg_read_scanlines(&decoder, &row, 1);
    }
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
    return picture;
}

Bytes noise(std::size_t count, std::uint32_t seed) {
    std::mt19937 random(seed);
    Bytes bytes(count);
    for (unsigned char& byte : bytes) {
        byte = static_cast<unsigned char>(random() >> 8);
    }
    return bytes;
}

} // namespace doccam::test

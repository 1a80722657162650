#include "picture/jpeg.h"

#include <jpeglib.h>
#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace doccam::virtualcam {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

struct JumpingErrors {
    jpeg_error_mgr manager; // first, so that libjpeg's pointer to it also points to the whole
    std::jmp_buf escape;
};

[[noreturn]] void jumpOut(j_common_ptr info) {
    std::longjmp(reinterpret_cast<JumpingErrors*>(info->err)->escape, 1);
}

void keepSilent(j_common_ptr) {}

void prepare(jpeg_compress_struct& info, const cv::Mat& picture, int quality) {
    info.image_width = static_cast<JDIMENSION>(picture.cols);
    info.image_height = static_cast<JDIMENSION>(picture.rows);
    info.input_components = 3;
    info.in_color_space = JCS_EXT_BGR;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    info.comp_info[0].h_samp_factor = 2;
    info.comp_info[0].v_samp_factor = 1;
}

// Returns false if the data cannot be decoded; picture is then incomplete.
bool decodeJpeg(std::FILE* file, cv::Mat& picture) {
    jpeg_decompress_struct info{};
    JumpingErrors errors{};
    info.err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = jumpOut;
    errors.manager.output_message = keepSilent;
    if (setjmp(errors.escape) != 0) {
        jpeg_destroy_decompress(&info);
        return false;
    }
    jpeg_create_decompress(&info);
    jpeg_stdio_src(&info, file);
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_EXT_BGR;
    jpeg_start_decompress(&info);
    picture.create(static_cast<int>(info.output_height), static_cast<int>(info.output_width),
                   CV_8UC3);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = picture.ptr(static_cast<int>(info.output_scanline));
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    return true;
}

bool decodePng(const std::string& path, cv::Mat& picture) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0) {
        return false;
    }
    image.format = PNG_FORMAT_BGR;
    picture.create(static_cast<int>(image.height), static_cast<int>(image.width), CV_8UC3);
    const png_color white{255, 255, 255};
    return png_image_finish_read(&image, &white, picture.data, 0, nullptr) != 0;
}

} // namespace

std::vector<std::uint8_t> encodeJpeg(const cv::Mat& picture, int quality) {
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* memory = nullptr;
    unsigned long bytes = 0;
    jpeg_mem_dest(&info, &memory, &bytes);
    prepare(info, picture, quality);
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
        auto* row = const_cast<JSAMPROW>(picture.ptr(static_cast<int>(info.next_scanline)));
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const std::unique_ptr<unsigned char, decltype(&std::free)> owner(memory, &std::free);
    return {memory, memory + bytes};
}

cv::Mat loadPhoto(const std::string& path) {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
    if (!file) {
        throw std::runtime_error("cannot open the picture " + path);
    }
    cv::Mat picture;
    const int first = std::getc(file.get());
    std::rewind(file.get());
    const bool read = first == 0x89 ? decodePng(path, picture) : decodeJpeg(file.get(), picture);
    if (!read) {
        throw std::runtime_error("cannot decode the picture " + path);
    }
    return picture;
}

} // namespace doccam::virtualcam

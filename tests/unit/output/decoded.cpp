#include "decoded.h"

#include <gtest/gtest.h>
#include <png.h>

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iterator>

// clang-format off: this header needs <cstdio> and <cstddef> before it
#include <jpeglib.h>

// clang-format on

namespace doccam::test {

Decoded readJpeg(const std::string& path) {
    const std::string file = readText(path);
    if (!file.starts_with("\xff\xd8")) {
        ADD_FAILURE() << path << " is no JPEG";
        return {};
    }
    jpeg_decompress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&jpeg);
    std::vector<unsigned char> bytes(file.begin(), file.end());
    jpeg_mem_src(&jpeg, bytes.data(), bytes.size());
    jpeg_read_header(&jpeg, TRUE);
    Decoded picture{static_cast<int>(jpeg.image_width),
                    static_cast<int>(jpeg.image_height),
                    jpeg.num_components,
                    {},
                    jpeg.quant_tbl_ptrs[0]->quantval[0]};
    jpeg.out_color_space = JCS_RGB;
    jpeg_start_decompress(&jpeg);
    std::vector<unsigned char> row(std::size_t{jpeg.output_width} * 3);
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW start = row.data();
        jpeg_read_scanlines(&jpeg, &start, 1);
        for (std::size_t i = 0; i < row.size(); i += 3) {
            picture.pixels.push_back({row[i], row[i + 1], row[i + 2]});
        }
    }
    jpeg_finish_decompress(&jpeg);
    EXPECT_EQ(errors.num_warnings, 0) << path;
    jpeg_destroy_decompress(&jpeg);
    return picture;
}

Decoded readPng(const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0) {
        ADD_FAILURE() << path << ": " << image.message;
        return {};
    }
    const int channels = static_cast<int>(PNG_IMAGE_SAMPLE_CHANNELS(image.format));
    image.format = PNG_FORMAT_RGB;
    std::vector<unsigned char> bytes(PNG_IMAGE_SIZE(image));
    const png_color black{0, 0, 0};
    if (png_image_finish_read(&image, &black, bytes.data(), 0, nullptr) == 0) {
        ADD_FAILURE() << path << ": " << image.message;
        return {};
    }
    Decoded picture{static_cast<int>(image.width), static_cast<int>(image.height), channels, {}};
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        picture.pixels.push_back({bytes[i], bytes[i + 1], bytes[i + 2]});
    }
    return picture;
}

Decoded readBmp(const std::string& path) {
    const std::string file = readText(path);
    const auto number = [&file](std::size_t at, int bytes) {
        int value = 0;
        for (int i = bytes; i-- > 0;) {
            value =
                value * 256 + static_cast<unsigned char>(file.at(at + static_cast<unsigned>(i)));
        }
        return value;
    };
    if (!file.starts_with("BM") || number(28, 2) != 24) {
        ADD_FAILURE() << path << " is no 24-bit BMP";
        return {};
    }
    Decoded picture{number(18, 4), number(22, 4), 3, {}};
    const int stride = (picture.width * 3 + 3) / 4 * 4;
    for (int y = picture.height; y-- > 0;) {
        for (int x = 0; x < picture.width; ++x) {
            const auto at = static_cast<std::size_t>(number(10, 4) + y * stride + x * 3);
            picture.pixels.push_back({number(at + 2, 1), number(at + 1, 1), number(at, 1)});
        }
    }
    return picture;
}

std::string readText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

} // namespace doccam::test

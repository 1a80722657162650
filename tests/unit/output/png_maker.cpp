#include "png_maker.h"

#include <stdexcept>

namespace doccam::test {
namespace {

void append(png_structp png, png_bytep data, std::size_t length) {
    auto* file = static_cast<std::string*>(png_get_io_ptr(png));
    for (std::size_t i = 0; i < length; ++i) {
        file->push_back(static_cast<char>(data[i]));
    }
}

void refuse(png_structp /*png*/, png_const_charp message) {
    throw std::invalid_argument(message);
}

constexpr std::size_t kHeaderEnd = 33; // end of the signature and the first chunk

} // namespace

std::string makePng(int width, const PngKind& kind, const std::vector<std::string>& rows) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, refuse, refuse);
    png_infop info = png_create_info_struct(png);
    std::string file;
    png_set_write_fn(png, &file, append, nullptr);
    png_set_IHDR(png, info, static_cast<unsigned>(width), static_cast<unsigned>(rows.size()),
                 kind.depth, kind.colour, kind.interlace, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (!kind.palette.empty()) {
        png_set_PLTE(png, info, kind.palette.data(), static_cast<int>(kind.palette.size()));
    }
    if (!kind.opacities.empty()) {
        png_set_tRNS(png, info, kind.opacities.data(), static_cast<int>(kind.opacities.size()),
                     nullptr);
    }
    std::vector<std::vector<png_byte>> bytes;
    std::vector<png_bytep> starts;
    for (const std::string& row : rows) {
        bytes.emplace_back(row.begin(), row.end());
        starts.push_back(bytes.back().data());
    }
    png_write_info(png, info);
    png_write_image(png, starts.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

std::string makeRgbPng(int width, int height, png_color colour) {
    std::string row;
    for (int x = 0; x < width; ++x) {
        row += {static_cast<char>(colour.red), static_cast<char>(colour.green),
                static_cast<char>(colour.blue)};
    }
    return makePng(width, {}, std::vector<std::string>(static_cast<std::size_t>(height), row));
}

std::string withBadRemark(const std::string& file) {
    const std::string remark("\0\0\0\3tEXta\0b!!!!", 15);
    return file.substr(0, kHeaderEnd) + remark + file.substr(kHeaderEnd);
}

std::string withRemarkOfLength(const std::string& file, unsigned bytes) {
    std::string remark;
    for (const int shift : {24, 16, 8, 0}) {
        remark.push_back(static_cast<char>(bytes >> shift & 0xFF));
    }
    return file.substr(0, kHeaderEnd) + remark + "tEXta" + file.substr(kHeaderEnd);
}

} // namespace doccam::test

// libpng's errors jump: functions that arm png_jmpbuf hold no object with a destructor.
#include "base/pictures/png_file_reader.h"

#include "base/pictures/exif_orientation.h"

#include <bit>
#include <csetjmp>

namespace doccam {
namespace {

constexpr int kWideBits = 16;
constexpr int kChannelsWithAlpha = 4;

} // namespace

PngFileReader::PngFileReader(std::FILE* file)
  : file_(file)
  , png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr))
  , info_(png_ != nullptr ? png_create_info_struct(png_) : nullptr)
  , end_(png_ != nullptr ? png_create_info_struct(png_) : nullptr) {}

PngFileReader::~PngFileReader() {
    png_destroy_read_struct(&png_, &info_, &end_);
}

bool PngFileReader::readHeader(int /*denominator*/, Header& header) {
    if (info_ == nullptr || end_ == nullptr || setjmp(png_jmpbuf(png_)) != 0) {
        return false;
    }
    png_init_io(png_, file_);
    png_read_info(png_, info_);
    header.size = {static_cast<int>(png_get_image_width(png_, info_)),
                   static_cast<int>(png_get_image_height(png_, info_))};
    header.type = typeOfPixels();
    return true;
}

// A transparent grey picture without an alpha channel stays opaque.
int PngFileReader::typeOfPixels() const {
    const int colours = png_get_color_type(png_, info_);
    const bool isTransparent = png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
    int channels = 1;
    if ((colours & PNG_COLOR_MASK_ALPHA) != 0) {
        channels = kChannelsWithAlpha;
    } else if ((colours & PNG_COLOR_MASK_COLOR) != 0) {
        channels = isTransparent ? kChannelsWithAlpha : 3;
    }
    return CV_MAKETYPE(png_get_bit_depth(png_, info_) == kWideBits ? CV_16U : CV_8U, channels);
}

void PngFileReader::chooseDepth(const cv::Mat& picture) {
    if (picture.depth() == CV_8U && png_get_bit_depth(png_, info_) == kWideBits) {
        png_set_strip_16(png_);
    } else if (std::endian::native == std::endian::little) {
        png_set_swap(png_);
    }
}

void PngFileReader::chooseColours(int channels) {
    const int colours = png_get_color_type(png_, info_);
    const bool isGrey = (colours & PNG_COLOR_MASK_COLOR) == 0;
    if (channels == kChannelsWithAlpha) {
        png_set_tRNS_to_alpha(png_);
    } else {
        png_set_strip_alpha(png_);
    }
    if (colours == PNG_COLOR_TYPE_PALETTE) {
        png_set_palette_to_rgb(png_);
    }
    if (isGrey && png_get_bit_depth(png_, info_) < 8) {
        png_set_expand_gray_1_2_4_to_8(png_);
    }
    if (channels == 1) {
        constexpr int kSilently = 1;
        png_set_rgb_to_gray(png_, kSilently, 0.299, 0.587);
    } else if (isGrey) {
        png_set_gray_to_rgb(png_);
    } else {
        png_set_bgr(png_);
    }
}

bool PngFileReader::readPixels(cv::Mat& picture) {
    rows_.resize(static_cast<std::size_t>(picture.rows));
    for (int row = 0; row < picture.rows; ++row) {
        rows_[static_cast<std::size_t>(row)] = picture.ptr(row);
    }
    return readRows(picture);
}

bool PngFileReader::readRows(const cv::Mat& picture) {
    if (setjmp(png_jmpbuf(png_)) != 0) {
        return false;
    }
    chooseDepth(picture);
    chooseColours(picture.channels());
    png_set_interlace_handling(png_);
    png_read_update_info(png_, info_);
    if (png_get_rowbytes(png_, info_) > picture.step) {
        return false;
    }
    png_read_image(png_, rows_.data());
    png_read_end(png_, end_);
    return true;
}

// The data may stand before the pixels or after them.
int PngFileReader::orientation() const {
    for (png_infop info : {info_, end_}) {
        png_uint_32 length = 0;
        png_bytep exif = nullptr;
        if (png_get_eXIf_1(png_, info, &length, &exif) != 0 && exif != nullptr) {
            return exifOrientation({exif, length});
        }
    }
    return 1;
}

} // namespace doccam

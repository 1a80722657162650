// libpng's errors jump: functions that arm png_jmpbuf hold no object with a destructor.
#include "base/pictures/png_writer.h"

#include <png.h>
#include <zlib.h>

#include <bit>
#include <csetjmp>
#include <new>
#include <utility>

namespace doccam {
namespace {

using Bytes = std::vector<unsigned char>;

class PngWriter {
  public:
    PngWriter()
      : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, onError, onWarning))
      , info_(png_ != nullptr ? png_create_info_struct(png_) : nullptr) {}

    ~PngWriter() { png_destroy_write_struct(&png_, &info_); }

    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;

    // Call once. False if libpng refuses the picture.
    bool write(const cv::Mat& picture);
    bool writeBits(const unsigned char* bits, std::size_t stride, cv::Size size);

    Bytes takeFile() { return std::move(file_); }

  private:
    static void onWrite(png_structp png, png_bytep data, std::size_t length);

    static void onFlush(png_structp /*png*/) {}

    // OpenCV, which then refuses the picture itself, reports.
    static void onError(png_structp png, png_const_charp /*message*/) { png_longjmp(png, 1); }

    static void onWarning(png_structp /*png*/, png_const_charp /*message*/) {}

    bool append(const unsigned char* data, std::size_t length);
    void describe(const cv::Mat& picture);

    png_structp png_;
    png_infop info_;
    Bytes file_;
};

bool PngWriter::append(const unsigned char* data, std::size_t length) {
    try {
        file_.insert(file_.end(), data, data + length);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

// Exceptions must not pass through libpng.
void PngWriter::onWrite(png_structp png, png_bytep data, std::size_t length) {
    if (!static_cast<PngWriter*>(png_get_io_ptr(png))->append(data, length)) {
        png_error(png, "out of memory");
    }
}

// OpenCV's choice of filter, level and strategy.
void PngWriter::describe(const cv::Mat& picture) {
    constexpr int kColours[] = {PNG_COLOR_TYPE_GRAY, 0, PNG_COLOR_TYPE_RGB,
                                PNG_COLOR_TYPE_RGB_ALPHA};
    png_set_filter(png_, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
    png_set_compression_level(png_, Z_BEST_SPEED);
    png_set_compression_strategy(png_, Z_RLE);
    png_set_IHDR(png_, info_, static_cast<png_uint_32>(picture.cols),
                 static_cast<png_uint_32>(picture.rows), picture.depth() == CV_8U ? 8 : 16,
                 kColours[picture.channels() - 1], PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
}

bool PngWriter::write(const cv::Mat& picture) {
    if (info_ == nullptr || setjmp(png_jmpbuf(png_)) != 0) {
        return false;
    }
    png_set_write_fn(png_, this, onWrite, onFlush);
    describe(picture);
    png_write_info(png_, info_);
    png_set_bgr(png_);
    if (std::endian::native == std::endian::little) {
        png_set_swap(png_);
    }
    for (int row = 0; row < picture.rows; ++row) {
        png_write_row(png_, picture.ptr(row));
    }
    png_write_end(png_, info_);
    return true;
}

// Filters are of no use to bits.
bool PngWriter::writeBits(const unsigned char* bits, std::size_t stride, cv::Size size) {
    if (info_ == nullptr || setjmp(png_jmpbuf(png_)) != 0) {
        return false;
    }
    png_set_write_fn(png_, this, onWrite, onFlush);
    png_set_filter(png_, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_set_IHDR(png_, info_, static_cast<png_uint_32>(size.width),
                 static_cast<png_uint_32>(size.height), 1, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png_, info_);
    for (int row = 0; row < size.height; ++row) {
        png_write_row(png_, bits + stride * static_cast<std::size_t>(row));
    }
    png_write_end(png_, info_);
    return true;
}

bool isSuitable(const cv::Mat& picture) {
    const int channels = picture.channels();
    return picture.dims == 2 && !picture.empty() &&
           (picture.depth() == CV_8U || picture.depth() == CV_16U) &&
           (channels == 1 || channels == 3 || channels == 4);
}

} // namespace

std::optional<Bytes> pngOf(const cv::Mat& picture) {
    PngWriter writer;
    if (!isSuitable(picture) || !writer.write(picture)) {
        return std::nullopt;
    }
    return writer.takeFile();
}

std::optional<Bytes> pngOfBits(const unsigned char* bits, std::size_t stride, int width,
                               int height) {
    PngWriter writer;
    if (!writer.writeBits(bits, stride, {width, height})) {
        return std::nullopt;
    }
    return writer.takeFile();
}

} // namespace doccam

#include "output/pdf/png_reader.h"

#include <algorithm>
#include <csetjmp>
#include <string_view>

namespace doccam {
namespace {

// libharu mangles 16-bit samples, fails or double-frees on interlaced pictures, and reads past the
// rows of a transparent palette picture with packed samples.
bool isSimple(png_const_structp png, png_const_infop info) {
    const int depth = png_get_bit_depth(png, info);
    const bool transparent = png_get_valid(png, info, PNG_INFO_tRNS) != 0;
    return png_get_interlace_type(png, info) == PNG_INTERLACE_NONE &&
           (transparent ? depth == 8 : depth <= 8);
}

// The bytes that libpng allocates for the chunk whose header it has just read: the whole chunk,
// except for pixels, which it reads piece by piece.
std::size_t bytesOfChunk(png_const_structp png, png_const_bytep header) {
    constexpr std::string_view kPixels = "IDAT";
    if ((png_get_io_state(png) & PNG_IO_MASK_LOC) != PNG_IO_CHUNK_HDR ||
        std::equal(kPixels.begin(), kPixels.end(), header + 4)) {
        return 0;
    }
    return png_get_uint_32(header);
}

} // namespace

// Functions that arm png_jmpbuf hold no object with a destructor, since an error would jump over
// it.

PngReader::PngReader(std::span<const unsigned char> file)
  : rest_(file)
  , png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, this, onError, onWarning))
  , info_(png_ != nullptr ? png_create_info_struct(png_) : nullptr) {}

PngReader::~PngReader() {
    png_destroy_read_struct(&png_, &info_, nullptr);
}

void PngReader::onError(png_structp png, png_const_charp /*message*/) {
    png_longjmp(png, 1);
}

void PngReader::onWarning(png_structp png, png_const_charp /*message*/) {
    static_cast<PngReader*>(png_get_error_ptr(png))->plain_ = false;
}

void PngReader::onRead(png_structp png, png_bytep data, std::size_t length) {
    auto& rest = static_cast<PngReader*>(png_get_io_ptr(png))->rest_;
    if (rest.size() < length) {
        png_error(png, "file ends early");
    }
    std::copy_n(rest.begin(), length, data);
    rest = rest.subspan(length);
    if (bytesOfChunk(png, data) > rest.size()) {
        png_error(png, "file ends early");
    }
}

bool PngReader::readHeader() {
    if (info_ == nullptr || setjmp(png_jmpbuf(png_)) != 0) {
        return false;
    }
    png_set_read_fn(png_, this, onRead);
    png_read_info(png_, info_);
    width_ = png_get_image_width(png_, info_);
    height_ = png_get_image_height(png_, info_);
    return true;
}

bool PngReader::askForBytes() {
    if (setjmp(png_jmpbuf(png_)) != 0) {
        return false;
    }
    plain_ = plain_ && isSimple(png_, info_);
    png_set_expand(png_);
    png_set_strip_16(png_);
    png_set_interlace_handling(png_);
    png_read_update_info(png_, info_);
    return true;
}

bool PngReader::readRows() {
    if (setjmp(png_jmpbuf(png_)) != 0) {
        return false;
    }
    png_read_image(png_, rows_.data());
    png_read_end(png_, nullptr);
    return true;
}

bool PngReader::readPixels() {
    if (!askForBytes()) {
        return false;
    }
    const std::size_t rowBytes = png_get_rowbytes(png_, info_);
    pixels_.resize(rowBytes * height_);
    rows_.resize(height_);
    for (std::size_t row = 0; row < height_; ++row) {
        rows_[row] = pixels_.data() + row * rowBytes;
    }
    if (!readRows()) {
        return false;
    }
    splitAlpha(png_get_channels(png_, info_));
    return true;
}

void PngReader::splitAlpha(unsigned samples) {
    const bool hasAlpha = samples % 2 == 0;
    channels_ = hasAlpha ? samples - 1 : samples;
    if (!hasAlpha) {
        return;
    }
    const std::size_t count = std::size_t{width_} * height_;
    alpha_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        std::copy_n(pixels_.begin() + static_cast<std::ptrdiff_t>(i * samples), channels_,
                    pixels_.begin() + static_cast<std::ptrdiff_t>(i * channels_));
        // After the copy, which never writes this pixel's alpha or beyond.
        alpha_[i] = pixels_[i * samples + channels_];
    }
    pixels_.resize(count * channels_);
}

} // namespace doccam

#include "output/jpeg_reader.h"

#include <jerror.h>

namespace doccam {
namespace {

// Warnings after which part of the picture is made up; the others concern markers only.
bool losesPicture(int code) {
    return code == JWRN_HIT_MARKER || code == JWRN_HUFF_BAD_CODE || code == JWRN_JPEG_EOF ||
           code == JWRN_MUST_RESYNC || code == JWRN_ARITH_BAD_CODE || code == JWRN_NOT_SEQUENTIAL ||
           code == JWRN_BOGUS_PROGRESSION;
}

} // namespace

// The functions that arm failed_ hold no object with a destructor: an error jumps over them.

JpegReader::JpegReader(std::span<const unsigned char> file)
  : file_(file) {
    jpeg_.err = jpeg_std_error(&errors_);
    jpeg_.client_data = this;
    errors_.error_exit = onError;
    errors_.emit_message = onMessage;
}

JpegReader::~JpegReader() {
    jpeg_destroy_decompress(&jpeg_);
}

void JpegReader::onError(j_common_ptr jpeg) {
    std::longjmp(static_cast<JpegReader*>(jpeg->client_data)->failed_, 1);
}

void JpegReader::onMessage(j_common_ptr jpeg, int level) {
    if (level < 0 && losesPicture(jpeg->err->msg_code)) {
        static_cast<JpegReader*>(jpeg->client_data)->damaged_ = true;
    }
}

bool JpegReader::readHeader() {
    if (setjmp(failed_) != 0) {
        return false;
    }
    jpeg_create_decompress(&jpeg_);
    jpeg_mem_src(&jpeg_, file_.data(), file_.size());
    return jpeg_read_header(&jpeg_, TRUE) == JPEG_HEADER_OK;
}

bool JpegReader::readPixels() {
    if (setjmp(failed_) != 0) {
        return false;
    }
    // All the compressed data is read as for the full picture, at a fraction of the work.
    jpeg_.scale_num = 1;
    jpeg_.scale_denom = 8;
    jpeg_.out_color_space = jpeg_.jpeg_color_space;
    jpeg_start_decompress(&jpeg_);
    row_.resize(std::size_t{jpeg_.output_width} * static_cast<unsigned>(jpeg_.output_components));
    while (jpeg_.output_scanline < jpeg_.output_height) {
        JSAMPROW row = row_.data();
        jpeg_read_scanlines(&jpeg_, &row, 1);
    }
    jpeg_finish_decompress(&jpeg_);
    return !damaged_;
}

} // namespace doccam

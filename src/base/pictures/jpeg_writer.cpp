#include "base/pictures/jpeg_writer.h"

#include "base/handles/libjpeg.h"

#include <algorithm>
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <new>
#include <utility>

namespace doccam {
namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::size_t kFirstBytes = 1 << 18;

class JpegWriter {
  public:
    JpegWriter();

    ~JpegWriter() { jpeg_destroy_compress(&jpeg_); }

    JpegWriter(const JpegWriter&) = delete;
    JpegWriter& operator=(const JpegWriter&) = delete;

    // Call once. False if libjpeg refuses the picture.
    bool write(const cv::Mat& picture, int quality, JpegCoding coding);

    Bytes takeFile() { return std::move(file_); }

  private:
    static JpegWriter& of(void* jpeg) {
        return *static_cast<JpegWriter*>(static_cast<j_common_ptr>(jpeg)->client_data);
    }

    static void onError(j_common_ptr jpeg) { std::longjmp(of(jpeg).failed_, 1); }

    static void onStart(j_compress_ptr jpeg) { of(jpeg).growTo(kFirstBytes); }

    static boolean onFull(j_compress_ptr jpeg) {
        JpegWriter& writer = of(jpeg);
        writer.written_ = writer.file_.size();
        writer.growTo(2 * writer.written_);
        return TRUE;
    }

    static void onEnd(j_compress_ptr jpeg) {
        JpegWriter& writer = of(jpeg);
        writer.file_.resize(writer.file_.size() - writer.target_.free_in_buffer);
    }

    void growTo(std::size_t size);
    bool tryToGrow(std::size_t size);

    Bytes file_;
    std::size_t written_ = 0; // bytes in the earlier, full part
    jpeg_error_mgr errors_{};
    jpeg_destination_mgr target_{};
    jpeg_compress_struct jpeg_{};
    std::jmp_buf failed_{};
};

JpegWriter::JpegWriter() {
    jpeg_.err = jpeg_std_error(&errors_);
    jpeg_.client_data = this;
    errors_.error_exit = onError;
    target_.init_destination = onStart;
    target_.empty_output_buffer = onFull;
    target_.term_destination = onEnd;
}

bool JpegWriter::tryToGrow(std::size_t size) {
    try {
        file_.resize(size);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

// Exceptions must not pass through libjpeg.
void JpegWriter::growTo(std::size_t size) {
    if (!tryToGrow(size)) {
        ERREXIT1(&jpeg_, JERR_OUT_OF_MEMORY, 0);
    }
    target_.next_output_byte = file_.data() + written_;
    target_.free_in_buffer = size - written_;
}

J_COLOR_SPACE coloursOf(const cv::Mat& picture) {
    switch (picture.channels()) {
    case 1:
        return JCS_GRAYSCALE;
    case 3:
        return JCS_EXT_BGR;
    default:
        return JCS_EXT_BGRX;
    }
}

// Holds no object with a destructor, since an error would jump over it.
bool JpegWriter::write(const cv::Mat& picture, int quality, JpegCoding coding) {
    if (setjmp(failed_) != 0) {
        return false;
    }
    jpeg_create_compress(&jpeg_);
    jpeg_.dest = &target_;
    jpeg_.image_width = static_cast<unsigned>(picture.cols);
    jpeg_.image_height = static_cast<unsigned>(picture.rows);
    jpeg_.input_components = picture.channels();
    jpeg_.in_color_space = coloursOf(picture);
    jpeg_set_defaults(&jpeg_);
    jpeg_set_quality(&jpeg_, std::clamp(quality, 0, 100), TRUE);
    if (coding == JpegCoding::kSmallest) {
        jpeg_simple_progression(&jpeg_);
    }
    jpeg_start_compress(&jpeg_, TRUE);
    while (jpeg_.next_scanline < jpeg_.image_height) {
        auto* row = const_cast<JSAMPROW>(picture.ptr(static_cast<int>(jpeg_.next_scanline)));
        jpeg_write_scanlines(&jpeg_, &row, 1);
    }
    jpeg_finish_compress(&jpeg_);
    return true;
}

bool isSuitable(const cv::Mat& picture) {
    const int type = picture.type();
    return picture.dims == 2 && !picture.empty() &&
           (type == CV_8UC1 || type == CV_8UC3 || type == CV_8UC4);
}

} // namespace

std::optional<Bytes> jpegOf(const cv::Mat& picture, int quality, JpegCoding coding) {
    if (!isSuitable(picture)) {
        return std::nullopt;
    }
    JpegWriter writer;
    if (!writer.write(picture, quality, coding)) {
        return std::nullopt;
    }
    return writer.takeFile();
}

} // namespace doccam

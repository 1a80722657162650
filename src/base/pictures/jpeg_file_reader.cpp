// libjpeg's errors jump: functions that arm failed_ hold no object with a destructor.
#include "base/pictures/jpeg_file_reader.h"

#include "base/pictures/exif_orientation.h"

#include <algorithm>

namespace doccam {
namespace {

constexpr int kInks = 4;

struct Pixel {
    int blue;
    int green;
    int red;
};

// Adobe's files store inverted inks: each is multiplied by the inverted black.
Pixel pixelOf(const unsigned char* inks) {
    constexpr int kFull = 255;
    const int black = inks[3];
    const auto colour = [black](int ink) { return black - ((kFull - ink) * black >> 8); };
    return {colour(inks[2]), colour(inks[1]), colour(inks[0])};
}

// BT.601 in 14 bits, as OpenCV weighs.
unsigned char greyOf(const Pixel& pixel) {
    constexpr int kBits = 14;
    constexpr int kRed = 4899;
    constexpr int kGreen = 9617;
    constexpr int kBlue = (1 << kBits) - kRed - kGreen;
    const int sum = pixel.blue * kBlue + pixel.green * kGreen + pixel.red * kRed;
    return static_cast<unsigned char>((sum + (1 << (kBits - 1))) >> kBits);
}

void convertInks(const unsigned char* inks, cv::Mat& picture, int row) {
    unsigned char* target = picture.ptr(row);
    for (int x = 0; x < picture.cols; ++x, inks += kInks, target += picture.channels()) {
        const Pixel pixel = pixelOf(inks);
        if (picture.channels() == 1) {
            *target = greyOf(pixel);
            continue;
        }
        target[0] = static_cast<unsigned char>(pixel.blue);
        target[1] = static_cast<unsigned char>(pixel.green);
        target[2] = static_cast<unsigned char>(pixel.red);
    }
}

} // namespace

JpegFileReader::JpegFileReader(std::FILE* file)
  : file_(file) {
    reportByJumps();
}

JpegFileReader::JpegFileReader(std::span<const unsigned char> bytes) {
    reportByJumps();
    bytes_.next_input_byte = bytes.data();
    bytes_.bytes_in_buffer = bytes.size();
    bytes_.init_source = [](j_decompress_ptr /*jpeg*/) {};
    bytes_.fill_input_buffer = [](j_decompress_ptr /*jpeg*/) -> boolean { return FALSE; };
    bytes_.skip_input_data = [](j_decompress_ptr jpeg, long count) {
        const auto skipped =
            std::min(static_cast<std::size_t>(std::max(count, 0L)), jpeg->src->bytes_in_buffer);
        jpeg->src->next_input_byte += skipped;
        jpeg->src->bytes_in_buffer -= skipped;
    };
    bytes_.resync_to_restart = jpeg_resync_to_restart;
    bytes_.term_source = [](j_decompress_ptr /*jpeg*/) {};
}

void JpegFileReader::reportByJumps() {
    jpeg_.err = jpeg_std_error(&errors_);
    jpeg_.client_data = this;
    errors_.error_exit = onError;
}

JpegFileReader::~JpegFileReader() {
    jpeg_destroy_decompress(&jpeg_);
}

void JpegFileReader::onError(j_common_ptr jpeg) {
    std::longjmp(static_cast<JpegFileReader*>(jpeg->client_data)->failed_, 1);
}

bool JpegFileReader::readHeader(int denominator, Header& header) {
    if (setjmp(failed_) != 0) {
        return false;
    }
    constexpr unsigned kWholeMarker = 0xFFFF;
    jpeg_create_decompress(&jpeg_);
    if (file_ != nullptr) {
        jpeg_stdio_src(&jpeg_, file_);
    } else {
        jpeg_.src = &bytes_;
    }
    jpeg_save_markers(&jpeg_, JPEG_APP0 + 1, kWholeMarker);
    jpeg_read_header(&jpeg_, TRUE);
    jpeg_.scale_num = 1;
    jpeg_.scale_denom = static_cast<unsigned>(denominator);
    jpeg_calc_output_dimensions(&jpeg_);
    header = {{static_cast<int>(jpeg_.output_width), static_cast<int>(jpeg_.output_height)},
              jpeg_.num_components > 1 ? CV_8UC3 : CV_8UC1,
              true};
    return true;
}

int JpegFileReader::orientationInMarkers() const {
    constexpr unsigned kIdentifierBytes = 6; // "Exif" and two zeros
    for (auto* marker = jpeg_.marker_list; marker != nullptr; marker = marker->next) {
        if (marker->marker == JPEG_APP0 + 1) {
            return marker->data_length > kIdentifierBytes
                       ? exifOrientation({marker->data + kIdentifierBytes,
                                          marker->data_length - kIdentifierBytes})
                       : 1;
        }
    }
    return 1;
}

void JpegFileReader::chooseColours(bool colour) {
    if (jpeg_.num_components == kInks) {
        jpeg_.out_color_space = JCS_CMYK;
        jpeg_.out_color_components = kInks;
        return;
    }
    jpeg_.out_color_space = colour ? JCS_EXT_BGR : JCS_GRAYSCALE;
    jpeg_.out_color_components = colour ? 3 : 1;
}

bool JpegFileReader::readPixels(cv::Mat& picture) {
    orientation_ = orientationInMarkers();
    if (jpeg_.num_components == kInks) {
        inkRow_.resize(static_cast<std::size_t>(picture.cols) * kInks);
    }
    return readRows(picture);
}

// Once all rows are there, damage after them does not matter.
bool JpegFileReader::readRows(cv::Mat& picture) {
    allRead_ = false;
    if (setjmp(failed_) != 0) {
        return allRead_;
    }
    chooseColours(picture.channels() > 1);
    jpeg_start_decompress(&jpeg_);
    // Bytes that end early give fewer rows.
    for (int row = 0; row < picture.rows; ++row) {
        JSAMPROW target = inkRow_.empty() ? picture.ptr(row) : inkRow_.data();
        jpeg_read_scanlines(&jpeg_, &target, 1);
        if (!inkRow_.empty()) {
            convertInks(inkRow_.data(), picture, row);
        }
    }
    allRead_ = true;
    jpeg_finish_decompress(&jpeg_);
    return true;
}

} // namespace doccam

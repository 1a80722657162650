#include "documents/writer/pictures/jpeg_picture.h"

#include "base/handles/libjpeg.h"
#include "base/pictures/exif_orientation.h"

#include <csetjmp>
#include <span>
#include <utility>

namespace doccam::host {
namespace {

// libjpeg's errors jump: read() holds no object with a destructor while failed_ is armed.
class HeaderReader {
  public:
    HeaderReader() {
        jpeg_.err = jpeg_std_error(&errors_);
        errors_.error_exit = [](j_common_ptr jpeg) {
            std::longjmp(static_cast<HeaderReader*>(jpeg->client_data)->failed_, 1);
        };
        errors_.output_message = [](j_common_ptr) {};
        jpeg_.client_data = this;
        isCreated_ = setjmp(failed_) == 0;
        if (isCreated_) {
            jpeg_create_decompress(&jpeg_);
        }
    }

    ~HeaderReader() { jpeg_destroy_decompress(&jpeg_); }

    HeaderReader(const HeaderReader&) = delete;
    HeaderReader& operator=(const HeaderReader&) = delete;

    bool read(const Bytes& bytes) {
        constexpr unsigned kWholeMarker = 0xFFFF;
        if (!isCreated_ || setjmp(failed_) != 0) {
            return false;
        }
        jpeg_mem_src(&jpeg_, bytes.data(), bytes.size());
        jpeg_save_markers(&jpeg_, JPEG_APP0 + 1, kWholeMarker);
        return jpeg_read_header(&jpeg_, TRUE) == JPEG_HEADER_OK;
    }

    const jpeg_decompress_struct& header() const { return jpeg_; }

  private:
    jpeg_error_mgr errors_{};
    jpeg_decompress_struct jpeg_{};
    std::jmp_buf failed_{};
    bool isCreated_ = false;
};

int orientationOf(const jpeg_decompress_struct& header) {
    constexpr std::size_t kExifHead = 6; // "Exif" and two zeros
    for (auto* marker = header.marker_list; marker != nullptr; marker = marker->next) {
        const std::span data(marker->data, marker->data_length);
        if (data.size() > kExifHead && data[0] == 'E' && data[1] == 'x' && data[2] == 'i') {
            return exifOrientation(data.subspan(kExifHead));
        }
    }
    return 1;
}

std::optional<cv::Size2d> dpiOf(const jpeg_decompress_struct& header) {
    constexpr double kCentimetresPerInch = 2.54;
    if (header.saw_JFIF_marker == FALSE || header.density_unit < 1 || header.density_unit > 2) {
        return std::nullopt;
    }
    const double unit = header.density_unit == 2 ? kCentimetresPerInch : 1;
    return cv::Size2d(header.X_density * unit, header.Y_density * unit);
}

ImageStream imageOf(const JpegPicture& picture) {
    const char* const colours = picture.components == 1   ? "/DeviceGray"
                                : picture.components == 3 ? "/DeviceRGB"
                                                          : "/DeviceCMYK";
    return {imageDictionary(picture.facts.size,
                            std::string("/BitsPerComponent 8 /Filter /DCTDecode /ColorSpace ") +
                                colours +
                                (picture.isInverted ? " /Decode [1 0 1 0 1 0 1 0]" : ""))};
}

} // namespace

std::optional<JpegPicture> jpegPicture(const Bytes& bytes) {
    HeaderReader reader;
    if (bytes.size() < 2 || bytes[0] != 0xFF || bytes[1] != 0xD8 || !reader.read(bytes)) {
        return std::nullopt;
    }
    const jpeg_decompress_struct& header = reader.header();
    const int components = header.num_components;
    if (header.arith_code != FALSE || header.data_precision != 8 ||
        (components != 1 && components != 3 && components != 4)) {
        return std::nullopt;
    }
    return JpegPicture{
        {{static_cast<int>(header.image_width), static_cast<int>(header.image_height)},
         orientationOf(header),
         dpiOf(header)},
        components,
        components == 4 && header.saw_Adobe_marker != FALSE};
}

ImageStream asImage(const JpegPicture& picture, const std::string& file, std::uint64_t length) {
    ImageStream image = imageOf(picture);
    image.file = file;
    image.extents = {{0, length}};
    return image;
}

ImageStream asImage(const JpegPicture& picture, Bytes bytes) {
    ImageStream image = imageOf(picture);
    image.bytes = std::move(bytes);
    return image;
}

} // namespace doccam::host

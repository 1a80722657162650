#include "documents/writer/pictures/jpeg_picture.h"

#include "base/handles/libjpeg.h"
#include "base/pictures/exif_orientation.h"
#include "documents/writer/document_plan.h"

#include <csetjmp>
#include <span>
#include <utility>

namespace doccam::host {
namespace {

// libjpeg's errors jump: read() holds no object with a destructor while failed_ is armed.
class JpegReader {
  public:
    JpegReader() {
        jpeg_.err = jpeg_std_error(&errors_);
        errors_.error_exit = [](j_common_ptr jpeg) {
            std::longjmp(static_cast<JpegReader*>(jpeg->client_data)->failed_, 1);
        };
        errors_.emit_message = onMessage;
        errors_.output_message = [](j_common_ptr) {};
        jpeg_.client_data = this;
        isCreated_ = setjmp(failed_) == 0;
        if (isCreated_) {
            jpeg_create_decompress(&jpeg_);
        }
    }

    ~JpegReader() { jpeg_destroy_decompress(&jpeg_); }

    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    bool read(const Bytes& bytes) {
        constexpr unsigned kWholeMarker = 0xFFFF;
        if (!isCreated_ || setjmp(failed_) != 0) {
            return false;
        }
        jpeg_mem_src(&jpeg_, bytes.data(), bytes.size());
        jpeg_save_markers(&jpeg_, JPEG_APP0 + 1, kWholeMarker);
        return jpeg_read_header(&jpeg_, TRUE) == JPEG_HEADER_OK;
    }

    // After read(). False for data that are not all there, or damaged.
    bool decode() {
        constexpr unsigned kReduction = 8;
        if (setjmp(failed_) != 0) {
            return false;
        }
        jpeg_.scale_num = 1;
        jpeg_.scale_denom = kReduction;
        jpeg_.out_color_space = jpeg_.jpeg_color_space; // converts nothing
        jpeg_start_decompress(&jpeg_);
        const JDIMENSION length =
            jpeg_.output_width * static_cast<JDIMENSION>(jpeg_.output_components);
        JSAMPARRAY row =
            jpeg_.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&jpeg_), JPOOL_IMAGE, length, 1);
        while (jpeg_.output_scanline < jpeg_.output_height) {
            jpeg_read_scanlines(&jpeg_, row, 1);
        }
        jpeg_finish_decompress(&jpeg_);
        return !isDamaged_;
    }

    const jpeg_decompress_struct& header() const { return jpeg_; }

  private:
    static void onMessage(j_common_ptr jpeg, int level) {
        const int code = jpeg->err->msg_code;
        if (level < 0 && (code == JWRN_JPEG_EOF || code == JWRN_HIT_MARKER ||
                          code == JWRN_HUFF_BAD_CODE || code == JWRN_MUST_RESYNC)) {
            static_cast<JpegReader*>(jpeg->client_data)->isDamaged_ = true;
        }
    }

    jpeg_error_mgr errors_{};
    jpeg_decompress_struct jpeg_{};
    std::jmp_buf failed_{};
    bool isCreated_ = false;
    bool isDamaged_ = false;
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
    JpegReader reader;
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

void requireWholeJpeg(const Bytes& bytes) {
    JpegReader reader;
    if (!reader.read(bytes) || !reader.decode()) {
        throw DocumentError("is damaged or ends too early");
    }
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

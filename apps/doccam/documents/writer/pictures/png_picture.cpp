#include "documents/writer/pictures/png_picture.h"

#include "documents/writer/document_plan.h"
#include "documents/writer/pictures/fax_image.h"

#include <opencv2/core.hpp>
#include <png.h>

#include <array>
#include <cstring>
#include <string_view>

namespace doccam::host {
namespace {

constexpr std::string_view kSignature("\x89PNG\r\n\x1a\n", 8);
constexpr double kMetresPerInch = 0.0254;

std::uint32_t numberAt(const Bytes& bytes, std::uint64_t offset) {
    return std::uint32_t{bytes[offset]} << 24 | std::uint32_t{bytes[offset + 1]} << 16 |
           std::uint32_t{bytes[offset + 2]} << 8 | bytes[offset + 3];
}

void readHeader(PngPicture& picture, const Bytes& bytes, std::uint64_t at) {
    picture.facts.size = {static_cast<int>(numberAt(bytes, at)),
                          static_cast<int>(numberAt(bytes, at + 4))};
    picture.bits = bytes[at + 8];
    picture.colourType = bytes[at + 9];
    picture.isInterlaced = bytes[at + 12] != 0;
    picture.hasAlpha = (picture.colourType & PNG_COLOR_MASK_ALPHA) != 0;
}

void readChunk(PngPicture& picture, const Bytes& bytes, std::string_view type,
               const Extent& chunk) {
    if (type == "IHDR" && chunk.length >= 13) {
        readHeader(picture, bytes, chunk.offset);
    } else if (type == "PLTE") {
        const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(chunk.offset);
        picture.palette.assign(start, start + static_cast<std::ptrdiff_t>(chunk.length));
    } else if (type == "tRNS") {
        picture.hasAlpha = true;
    } else if (type == "pHYs" && chunk.length >= 9 && bytes[chunk.offset + 8] == 1) {
        picture.facts.dpi = {numberAt(bytes, chunk.offset) * kMetresPerInch,
                             numberAt(bytes, chunk.offset + 4) * kMetresPerInch};
    } else if (type == "IDAT") {
        picture.data.push_back(chunk);
    }
}

Bytes dataOf(const PngPicture& picture, const Bytes& file) {
    Bytes data;
    for (const Extent& extent : picture.data) {
        const auto start = file.begin() + static_cast<std::ptrdiff_t>(extent.offset);
        data.insert(data.end(), start, start + static_cast<std::ptrdiff_t>(extent.length));
    }
    return data;
}

std::string asHex(const Bytes& bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

// The image of a file that is neither interlaced nor transparent.
ImageStream storedImage(const PngPicture& picture, const Bytes& file) {
    const bool isColour = picture.colourType == PNG_COLOR_TYPE_RGB;
    std::string colours = isColour ? "/DeviceRGB" : "/DeviceGray";
    if (picture.colourType == PNG_COLOR_TYPE_PALETTE) {
        colours = "[/Indexed /DeviceRGB " + std::to_string(picture.palette.size() / 3 - 1) + " <" +
                  asHex(picture.palette) + ">]";
    }
    const std::string bits = std::to_string(picture.bits);
    return {imageDictionary(picture.facts.size,
                            "/BitsPerComponent " + bits + " /ColorSpace " + colours +
                                " /Filter /FlateDecode /DecodeParms << /Predictor 15 /Colors " +
                                (isColour ? "3" : "1") + " /BitsPerComponent " + bits +
                                " /Columns " + std::to_string(picture.facts.size.width) + " >>"),
            dataOf(picture, file)};
}

// A picture of libpng's simple interface.
class DecodedPng {
  public:
    explicit DecodedPng(const Bytes& file) {
        image_.version = PNG_IMAGE_VERSION;
        if (png_image_begin_read_from_memory(&image_, file.data(), file.size()) == 0) {
            throw DocumentError("is damaged");
        }
    }

    ~DecodedPng() { png_image_free(&image_); }

    DecodedPng(const DecodedPng&) = delete;
    DecodedPng& operator=(const DecodedPng&) = delete;

    cv::Mat onWhite() {
        const bool isColour = (image_.format & PNG_FORMAT_FLAG_COLOR) != 0;
        image_.format = isColour ? PNG_FORMAT_BGR : PNG_FORMAT_GRAY;
        cv::Mat picture(static_cast<int>(image_.height), static_cast<int>(image_.width),
                        isColour ? CV_8UC3 : CV_8UC1);
        const png_color white{255, 255, 255};
        if (png_image_finish_read(&image_, &white, picture.data,
                                  static_cast<png_int_32>(picture.step), nullptr) == 0) {
            throw DocumentError("is damaged");
        }
        return picture;
    }

  private:
    png_image image_{};
};

Bytes encoded(const cv::Mat& picture) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.cols);
    image.height = static_cast<png_uint_32>(picture.rows);
    image.format = picture.channels() == 1 ? PNG_FORMAT_GRAY : PNG_FORMAT_BGR;
    png_alloc_size_t length = PNG_IMAGE_PNG_SIZE_MAX(image);
    Bytes bytes(length);
    const auto stride = static_cast<png_int_32>(picture.step);
    if (png_image_write_to_memory(&image, bytes.data(), &length, 0, picture.data, stride,
                                  nullptr) == 0) {
        throw DocumentError("does not fit into memory");
    }
    bytes.resize(length);
    return bytes;
}

// Black and white may be stored as grey.
bool maybeBlackAndWhite(const PngPicture& picture) {
    return picture.colourType == PNG_COLOR_TYPE_GRAY && picture.bits <= 8;
}

bool isBlackAndWhite(const cv::Mat& grey) {
    constexpr int kWhite = 255;
    return cv::countNonZero((grey == 0) | (grey == kWhite)) == static_cast<int>(grey.total());
}

// The picture as grey, if it has no colours.
cv::Mat withoutNeedlessChannels(const cv::Mat& picture) {
    if (picture.channels() == 1) {
        return picture;
    }
    cv::Mat channels[3];
    cv::split(picture, channels);
    return cv::norm(channels[0], channels[1], cv::NORM_INF) == 0 &&
                   cv::norm(channels[0], channels[2], cv::NORM_INF) == 0
               ? channels[0]
               : picture;
}

} // namespace

std::optional<PngPicture> pngPicture(const Bytes& bytes) {
    constexpr std::uint64_t kFrame = 12; // length, type and checksum
    if (bytes.size() < kSignature.size() ||
        std::memcmp(bytes.data(), kSignature.data(), kSignature.size()) != 0) {
        return std::nullopt;
    }
    PngPicture picture;
    for (std::uint64_t at = kSignature.size(); at + kFrame <= bytes.size();) {
        const Extent chunk{at + 8, numberAt(bytes, at)};
        const std::string_view type(reinterpret_cast<const char*>(&bytes[at + 4]), 4);
        if (chunk.length > bytes.size() - at - kFrame) {
            throw DocumentError("ends too early");
        }
        readChunk(picture, bytes, type, chunk);
        if (type == "IEND") {
            break;
        }
        at += kFrame + chunk.length;
    }
    if (picture.facts.size.area() <= 0 || picture.data.empty()) {
        throw DocumentError("is damaged");
    }
    return picture;
}

ImageStream asImage(const PngPicture& picture, const Bytes& file) {
    if (picture.isInterlaced || picture.hasAlpha) {
        return losslessImage(DecodedPng(file).onWhite());
    }
    if (maybeBlackAndWhite(picture)) {
        if (const cv::Mat grey = DecodedPng(file).onWhite(); isBlackAndWhite(grey)) {
            return faxImage(grey);
        }
    }
    return storedImage(picture, file);
}

ImageStream losslessImage(const cv::Mat& picture) {
    const cv::Mat plain = withoutNeedlessChannels(picture);
    if (plain.channels() == 1 && isBlackAndWhite(plain)) {
        return faxImage(plain);
    }
    const Bytes file = encoded(plain);
    return storedImage(*pngPicture(file), file);
}

} // namespace doccam::host

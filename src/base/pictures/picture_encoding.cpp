#include "base/pictures/picture_encoding.h"

#include "base/pictures/formats.h"
#include "base/pictures/jpeg_writer.h"
#include "base/pictures/png_writer.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <cctype>

namespace doccam {
namespace {

using Bytes = std::vector<unsigned char>;

// What OpenCV takes for the extension: the letters and digits after the last full stop, if only of
// a folder's name.
std::string extensionOf(const std::string& name) {
    const std::size_t stop = name.rfind('.');
    std::string extension;
    for (std::size_t i = stop + 1; stop != std::string::npos && i < name.size(); ++i) {
        const auto letter = static_cast<unsigned char>(name[i]);
        if (std::isalnum(letter) == 0) {
            break;
        }
        extension += static_cast<char>(std::tolower(letter));
    }
    return extension;
}

bool isJpeg(const std::string& extension) {
    return extension == "jpg" || extension == "jpeg" || extension == "jpe";
}

cv::Mat inBytes(const cv::Mat& picture) {
    cv::Mat bytes;
    picture.convertTo(bytes, CV_8U);
    return bytes;
}

// None if OpenCV must encode, or throw.
std::optional<Bytes> encodedHere(const std::string& extension, const cv::Mat& picture,
                                 std::optional<int> jpegQuality) {
    constexpr int kUsualQuality = 95;
    if (isJpeg(extension)) {
        return jpegOf(picture.depth() == CV_8U ? picture : inBytes(picture),
                      jpegQuality.value_or(kUsualQuality));
    }
    if (extension == "png") {
        const bool isKept = picture.depth() == CV_8U || picture.depth() == CV_16U;
        return pngOf(isKept ? picture : inBytes(picture));
    }
    return std::nullopt;
}

} // namespace

Bytes encodePicture(const std::string& name, const cv::Mat& picture,
                    std::optional<int> jpegQuality) {
    if (auto bytes = encodedHere(extensionOf(name), picture, jpegQuality)) {
        return *std::move(bytes);
    }
    Bytes bytes;
    const std::vector<int> parameters =
        jpegQuality ? std::vector<int>{cv::IMWRITE_JPEG_QUALITY, *jpegQuality} : std::vector<int>{};
    pictureFormats().encode(name, picture, bytes, parameters);
    return bytes;
}

bool canEncode(const std::string& name) {
    const std::string extension = extensionOf(name);
    return isJpeg(extension) || extension == "png" || pictureFormats().canEncode(name);
}

} // namespace doccam

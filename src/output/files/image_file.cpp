#include "output/files/image_file.h"

#include "base/handles/standard_file.h"
#include "output/files/jpeg_writer.h"
#include "output/files/staged_file.h"

#include <opencv2/imgcodecs.hpp>

#include <cstdio>
#include <utility>
#include <vector>

namespace doccam {
namespace {

using Bytes = std::vector<unsigned char>;

bool isWritable(const std::string& path, const cv::Mat& picture) {
    const int channels = picture.channels();
    return cv::haveImageWriter(path) && !picture.empty() &&
           (channels == 1 || channels == 3 || channels == 4);
}

std::vector<int> parametersOf(std::optional<int> jpegQuality) {
    return jpegQuality ? std::vector<int>{cv::IMWRITE_JPEG_QUALITY, *jpegQuality}
                       : std::vector<int>{};
}

// Encoded in memory, because not all of OpenCV's encoders notice a full disk.
std::optional<Bytes> encode(const std::string& path, const cv::Mat& picture,
                            std::optional<int> jpegQuality) {
    if (jpegQuality && path.ends_with(".jpg")) {
        if (auto jpeg = jpegOf(picture, *jpegQuality)) {
            return jpeg;
        }
    }
    Bytes bytes;
    try {
        cv::imencode(path, picture, bytes, parametersOf(jpegQuality));
    } catch (const cv::Exception&) {
        if (!isWritable(path, picture)) {
            throw;
        }
        return std::nullopt;
    }
    return bytes;
}

bool writeBytes(const std::string& path, const Bytes& bytes) {
    StandardFile file(std::fopen(path.c_str(), "wbe"));
    return file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size() &&
           closeChecked(std::move(file));
}

} // namespace

bool writeImage(const std::string& path, const cv::Mat& picture, std::optional<int> jpegQuality) {
    const auto bytes = encode(path, picture, jpegQuality);
    if (!bytes) {
        return false;
    }
    StagedFile file(path);
    return writeBytes(file.path(), *bytes) && file.commit();
}

} // namespace doccam

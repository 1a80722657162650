#include "output/files/image_file.h"

#include "base/handles/standard_file.h"
#include "base/modules/module.h"
#include "base/pictures/picture_encoding.h"
#include "output/files/staged_file.h"

#include <opencv2/core.hpp>

#include <cstdio>
#include <utility>
#include <vector>

namespace doccam {
namespace {

using Bytes = std::vector<unsigned char>;

bool isWritable(const std::string& path, const cv::Mat& picture) {
    const int channels = picture.channels();
    return canEncode(path) && !picture.empty() && (channels == 1 || channels == 3 || channels == 4);
}

// Encoded in memory, because not all of OpenCV's encoders notice a full disk.
std::optional<Bytes> encode(const std::string& path, const cv::Mat& picture,
                            std::optional<int> jpegQuality) {
    try {
        return encodePicture(path, picture, jpegQuality);
    } catch (const ModuleError& error) {
        std::fprintf(stderr, "doccam: %s\n", error.what());
    } catch (const cv::Exception&) {
        if (!isWritable(path, picture)) {
            throw;
        }
    }
    return std::nullopt;
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

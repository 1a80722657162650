#include "host/picture_file.h"

#include "host/failure.h"

#include <opencv2/imgcodecs.hpp>

#include <fstream>
#include <vector>

namespace doccam::host {
namespace {

// A header may promise more pixels than the image library takes.
cv::Mat readOrNothing(const std::string& file, int flags) {
    try {
        return cv::imread(file, flags);
    } catch (const cv::Exception&) {
        return {};
    }
}

} // namespace

cv::Mat readPicture(const std::string& file, int flags) {
    cv::Mat picture = readOrNothing(file, flags);
    if (picture.empty()) {
        throw Failure(kUsage, "The file " + file +
                                  " is no readable picture; give JPEG, PNG, TIFF or BMP files.");
    }
    return picture;
}

// Encoded in memory, because not every encoder of the image library notices a full disk.
void writePicture(const OutputFile& target, const std::string& path, const cv::Mat& picture,
                  int quality) {
    std::vector<unsigned char> bytes;
    cv::imencode(std::filesystem::path(path).extension().string(), picture, bytes,
                 {cv::IMWRITE_JPEG_QUALITY, quality});
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) {
        target.failForLackOfSpace();
    }
}

} // namespace doccam::host

#include "pictures/writing.h"

#include <opencv2/imgcodecs.hpp>

#include <filesystem>
#include <fstream>
#include <vector>

namespace doccam::host {

// Encoded in memory, because not all of OpenCV's encoders notice a full disk.
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

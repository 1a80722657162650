#include "pictures/writing.h"

#include "base/pictures/picture_encoding.h"
#include "host/modules/with_modules.h"

#include <filesystem>
#include <fstream>

namespace doccam::host {

// Encoded in memory, because not all of OpenCV's encoders notice a full disk.
bool writePicture(const std::string& path, const cv::Mat& picture, int quality) {
    const std::string extension = std::filesystem::path(path).extension();
    const auto bytes = withModules([&] { return encodePicture(extension, picture, quality); });
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(file.flush());
}

void writePicture(const OutputFile& target, const std::string& path, const cv::Mat& picture,
                  int quality) {
    if (!writePicture(path, picture, quality)) {
        target.failForLackOfSpace();
    }
}

} // namespace doccam::host

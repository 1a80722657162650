#include "pictures/writing.h"

#include "base/pictures/picture_encoding.h"
#include "host/modules/with_modules.h"

#include <filesystem>
#include <fstream>

namespace doccam::host {

bool writeBytes(const std::string& path, const std::vector<unsigned char>& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(file.flush());
}

// Encoded in memory, because not all of OpenCV's encoders notice a full disk.
bool writePicture(const std::string& path, const cv::Mat& picture, int quality) {
    const std::string extension = std::filesystem::path(path).extension();
    return writeBytes(path,
                      withModules([&] { return encodePicture(extension, picture, quality); }));
}

void writePicture(const OutputFile& target, const std::string& path, const cv::Mat& picture,
                  int quality) {
    if (!writePicture(path, picture, quality)) {
        target.failForLackOfSpace();
    }
}

void writeBytes(const OutputFile& target, const std::string& path,
                const std::vector<unsigned char>& bytes) {
    if (!writeBytes(path, bytes)) {
        target.failForLackOfSpace();
    }
}

} // namespace doccam::host

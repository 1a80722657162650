#include "pictures/written_file.h"

#include "base/pictures/picture_encoding.h"
#include "host/failure.h"
#include "host/modules/with_modules.h"
#include "pictures/pdf_name.h"
#include "pictures/reading.h"

#include <filesystem>

namespace doccam::host {

void refuseUnknownType(const std::string& name) {
    if (!isPdfName(name) && !withModules([&] { return canEncode(name); })) {
        throw Failure(kUsage, "The name " + name +
                                  " ends in no known file type; let it end in "
                                  ".jpg, .png, .tif, .bmp or .pdf.");
    }
}

WrittenFile describeFile(const std::string& path) {
    return describeFile(path, isPdfName(path) ? cv::Size() : sizeOfWritten(path));
}

WrittenFile describeFile(const std::string& path, cv::Size size) {
    std::error_code ignored;
    return {path, size.width, size.height, std::filesystem::file_size(path, ignored)};
}

std::string asText(const WrittenFile& file) {
    const std::string size =
        file.width > 0 ? std::to_string(file.width) + "x" + std::to_string(file.height) + "  " : "";
    return file.path + "  " + size + std::to_string(file.bytes) + " bytes";
}

Json asJson(const WrittenFile& file) {
    Json object{{"file", file.path}};
    if (file.width > 0) {
        object["width"] = file.width;
        object["height"] = file.height;
    }
    object["bytes"] = file.bytes;
    return object;
}

} // namespace doccam::host

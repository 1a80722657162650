#include "pictures/pdf_name.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace doccam::host {

bool isPdfName(const std::string& name) {
    std::string extension = std::filesystem::path(name).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char letter) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    });
    return extension == ".pdf";
}

} // namespace doccam::host

// What the library asks of the module that knows every type of picture file.
#pragma once

#include "base/modules/module.h"

#include <opencv2/core/mat.hpp>

#include <string>
#include <vector>

namespace doccam {

// The module's table. All of it throws what OpenCV throws.
struct PictureFormats {
    ModuleHead head;

    // Like cv::imread.
    cv::Mat (*read)(const std::string& path, int flags);

    // Like cv::imencode, for the extension of name.
    void (*encode)(const std::string& name, const cv::Mat& picture,
                   std::vector<unsigned char>& bytes, const std::vector<int>& parameters);

    // Like cv::haveImageWriter.
    bool (*canEncode)(const std::string& name);
};

// Opens the module at first use. Throws ModuleError. Any thread.
inline const PictureFormats& pictureFormats() {
    return moduleTable<PictureFormats>(kFormatsModule);
}

} // namespace doccam

// The module that reads and writes pictures of every type with OpenCV's imgcodecs.
#include "base/modules/module_seal.h"
#include "base/pictures/formats.h"

#include <opencv2/imgcodecs.hpp>

extern "C" {

[[gnu::visibility("default")]] extern constexpr doccam::PictureFormats doccam_module{
    .head = {doccam::kFormatsModule, DOCCAM_MODULE_VERSION},
    .read = [](const std::string& path, int flags) { return cv::imread(path, flags); },
    .encode =
        [](const std::string& name, const cv::Mat& picture, std::vector<unsigned char>& bytes,
           const std::vector<int>& parameters) { cv::imencode(name, picture, bytes, parameters); },
    .canEncode = [](const std::string& name) { return cv::haveImageWriter(name); },
};

[[gnu::used, gnu::section(".doccam_seal")]] extern constexpr doccam::ModuleSeal doccam_seal =
    doccam::unsealed();
}

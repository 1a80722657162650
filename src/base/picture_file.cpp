#include "base/picture_file.h"

#include "base/handles/standard_file.h"

#include <opencv2/imgcodecs.hpp>

#include <array>
#include <cstdio>
#include <string_view>

namespace doccam {
namespace {

bool looksLikeMedicalScan(const std::string& path) {
    constexpr std::string_view kMark = "DICM";
    constexpr std::size_t kMarkAt = 128;
    std::array<char, kMarkAt + kMark.size()> start{};
    const StandardFile file(std::fopen(path.c_str(), "rbe"));
    return file && std::fread(start.data(), 1, start.size(), file.get()) == start.size() &&
           std::string_view(start.data() + kMarkAt, kMark.size()) == kMark;
}

} // namespace

cv::Mat readPictureFile(const std::string& path, int flags) {
    return looksLikeMedicalScan(path) ? cv::Mat() : cv::imread(path, flags);
}

} // namespace doccam

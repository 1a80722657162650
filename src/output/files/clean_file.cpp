#include "output/files/clean_file.h"

#include "base/pictures/picture_file.h"
#include "docimage/clean/black_edge.h"
#include "output/files/image_file.h"

#include <opencv2/imgcodecs.hpp>

#include <string>

namespace doccam {
namespace {

// A file that cannot be written is silently left unchanged.
void rewrite(const char* path, int reading, void (*clean)(cv::Mat)) {
    const std::string file = path != nullptr ? path : "";
    const cv::Mat picture = readPictureFile(file, reading);
    clean(picture);
    writeImage(file, picture);
}

} // namespace

void whitenMarginsOfFile(const char* path) {
    rewrite(path, cv::IMREAD_COLOR, whitenMargins);
}

void whitenMarginsOfFileByBrightness(const char* path) {
    rewrite(path, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION, whitenMarginsByBrightness);
}

} // namespace doccam

// Whitening the dark margins of image files in place.
#include "base/picture_file.h"
#include "docimage/clean/black_edge.h"
#include "output/files/image_file.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgcodecs.hpp>

#include <string>

namespace {

// A file that cannot be written stays as it is, and nobody is told.
void rewrite(const char* path, int reading, void (*clean)(cv::Mat)) {
    const std::string file = path != nullptr ? path : "";
    const cv::Mat picture = doccam::readPictureFile(file, reading);
    clean(picture);
    doccam::writeImage(file, picture);
}

} // namespace

void FN_DeleteBlackEdgeEx(char* path) {
    rewrite(path, cv::IMREAD_COLOR, doccam::whitenMargins);
}

void FN_DeleteBlackEdgeEx2(char* path) {
    rewrite(path, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION,
            doccam::whitenMarginsByBrightness);
}

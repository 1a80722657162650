#include "serve/tray/page_pictures.h"

#include "base/pictures/picture_encoding.h"
#include "host/failure.h"
#include "pictures/reading.h"

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::serve {
namespace {

constexpr int kThumbnailSide = 240;

std::string thumbnailOf(const std::string& path) {
    constexpr int kThumbnailQuality = 80;
    const cv::Mat picture = host::readPicture(path, cv::IMREAD_COLOR);
    const double scale = static_cast<double>(kThumbnailSide) / std::max(picture.cols, picture.rows);
    const cv::Size size(std::max(1, cvRound(picture.cols * scale)),
                        std::max(1, cvRound(picture.rows * scale)));
    cv::Mat small;
    cv::resize(picture, small, size, 0, 0, cv::INTER_AREA);
    const auto bytes = encodePicture("thumbnail.jpg", small, kThumbnailQuality);
    return {bytes.begin(), bytes.end()};
}

} // namespace

// One at a time, as each takes the memory of a picture.
std::shared_ptr<const std::string> PagePictures::thumbnail(const host::KeptPage& page) {
    const auto file = picture(page);
    const std::lock_guard lock(mutex_);
    auto& thumbnail = thumbnails_[host::pictureName(page)];
    if (!thumbnail) {
        thumbnail = std::make_shared<const std::string>(thumbnailOf(file->path));
    }
    return thumbnail;
}

void PagePictures::forget(const host::KeptPage& page) {
    renderer_.forget(page);
    const std::lock_guard lock(mutex_);
    thumbnails_.erase(host::pictureName(page));
}

} // namespace doccam::serve

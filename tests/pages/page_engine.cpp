#include "page_engine.h"

#include <array>
#include <memory>
#include <stdexcept>
#include <string>

namespace doccam::test {

namespace {

constexpr int kMaximumSheets = 16;

using PageOwner = std::unique_ptr<DoccamPage, void (*)(DoccamPage*)>;

DoccamImage viewOf(const cv::Mat& picture) {
    return {picture.data, picture.cols, picture.rows, picture.step,
            picture.channels() == 1 ? DOCCAM_PIXELS_GREY : DOCCAM_PIXELS_BGR};
}

void require(int result, const char* what) {
    if (result < 0) {
        throw std::runtime_error(std::string(what) + " returned " + std::to_string(result));
    }
}

cv::Mat withoutBits(const DoccamPage& page) {
    cv::Mat picture(page.height, page.width, CV_8U);
    for (int y = 0; y < page.height; ++y) {
        const unsigned char* const row = page.data + static_cast<std::size_t>(y) * page.stride;
        for (int x = 0; x < page.width; ++x) {
            const bool white = (row[x / 8] >> (7 - x % 8) & 1) != 0;
            picture.at<unsigned char>(y, x) = white ? 255 : 0;
        }
    }
    return picture;
}

cv::Mat copyOf(const DoccamPage& page) {
    if (page.pixels == DOCCAM_PIXELS_BITS) {
        return withoutBits(page);
    }
    const int type = page.pixels == DOCCAM_PIXELS_GREY ? CV_8UC1 : CV_8UC3;
    return cv::Mat(page.height, page.width, type, page.data, page.stride).clone();
}

} // namespace

std::vector<DoccamSheet> findSheets(const cv::Mat& picture) {
    std::vector<DoccamSheet> sheets(kMaximumSheets);
    const DoccamImage image = viewOf(picture);
    const int count = doccam_find_sheets(&image, nullptr, sheets.data(), kMaximumSheets);
    require(count, "doccam_find_sheets");
    sheets.resize(static_cast<std::size_t>(count));
    return sheets;
}

virtualcam::Quad cornersOf(const DoccamSheet& sheet) {
    virtualcam::Quad corners;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        corners[i] = {sheet.corners[i][0], sheet.corners[i][1]};
    }
    return corners;
}

cv::Mat rectified(const cv::Mat& picture, const DoccamSheet& sheet) {
    const DoccamImage image = viewOf(picture);
    DoccamPage* page = nullptr;
    require(doccam_rectify(&image, &sheet, &page), "doccam_rectify");
    const PageOwner owner(page, doccam_page_free);
    return copyOf(*page);
}

cv::Mat paperLook(const cv::Mat& page, DoccamColour colour) {
    const DoccamImage image = viewOf(page);
    DoccamPage* result = nullptr;
    require(doccam_look(&image, DOCCAM_LOOK_PAPER, colour, &result), "doccam_look");
    const PageOwner owner(result, doccam_page_free);
    return copyOf(*result);
}

} // namespace doccam::test

#include "pages/rendering.h"

#include "base/pictures/picture_encoding.h"
#include "base/pictures/png_writer.h"
#include "host/failure.h"
#include "host/modules/with_modules.h"

#include <opencv2/core.hpp>

namespace doccam::host {
namespace {

cv::Mat pixelsOf(const DoccamPage& page) {
    const int type = page.pixels == DOCCAM_PIXELS_GREY ? CV_8UC1 : CV_8UC3;
    return {page.height, page.width, type, page.data, page.stride};
}

Page rectified(const cv::Mat& frame, const SheetCorners& corners) {
    const DoccamImage image = imageOf(frame);
    const DoccamSheet sheet = sheetAt(corners);
    DoccamPage* page = nullptr;
    failUnlessDone(doccam_rectify(&image, &sheet, &page));
    return Page(page);
}

cv::Mat turned(const cv::Mat& upright, int quarters) {
    constexpr cv::RotateFlags kTurns[] = {cv::ROTATE_90_CLOCKWISE, cv::ROTATE_180,
                                          cv::ROTATE_90_COUNTERCLOCKWISE};
    if (quarters % 4 == 0) {
        return upright;
    }
    cv::Mat picture;
    cv::rotate(upright, picture, kTurns[(quarters % 4 + 4) % 4 - 1]);
    return picture;
}

} // namespace

Page renderPage(const cv::Mat& frame, const Recipe& recipe) {
    const Page flat = recipe.corners ? rectified(frame, *recipe.corners) : nullptr;
    const cv::Mat picture = turned(flat ? pixelsOf(*flat) : frame, recipe.turn);
    const DoccamImage image = imageOf(picture);
    DoccamPage* page = nullptr;
    failUnlessDone(
        doccam_look(&image, static_cast<int>(recipe.look), static_cast<int>(recipe.colour), &page));
    return Page(page);
}

cv::Mat greyOrColour(const DoccamPage& page) {
    if (page.pixels != DOCCAM_PIXELS_BITS) {
        return pixelsOf(page);
    }
    cv::Mat grey(page.height, page.width, CV_8UC1);
    for (int y = 0; y < page.height; ++y) {
        const unsigned char* bits = page.data + static_cast<std::size_t>(y) * page.stride;
        for (int x = 0; x < page.width; ++x) {
            const bool white = (bits[x / 8] >> (7 - x % 8) & 1) != 0;
            grey.at<unsigned char>(y, x) = white ? 255 : 0;
        }
    }
    return grey;
}

std::vector<unsigned char> encodePage(const std::string& name, const DoccamPage& page,
                                      int quality) {
    if (page.pixels != DOCCAM_PIXELS_BITS) {
        return withModules([&] { return encodePicture(name, pixelsOf(page), quality); });
    }
    auto bytes = pngOfBits(page.data, page.stride, page.width, page.height);
    if (!bytes) {
        throw Failure(kUsage, "A page takes too much memory; give a smaller picture.");
    }
    return *std::move(bytes);
}

} // namespace doccam::host

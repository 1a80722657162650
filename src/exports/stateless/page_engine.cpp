// Pages out of pictures: finding sheets, making them upright, giving them a look.
#include "exports/stateless/image_argument.h"
#include "page/find.h"
#include "page/look.h"
#include "page/quadrilateral.h"
#include "page/rectify.h"

#include <doccam/page.h>

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>

namespace doccam {
namespace {

cv::Mat blueFirst(const DoccamImage& image) {
    if (image.pixels != DOCCAM_PIXELS_RGB) {
        return pixelsOf(image);
    }
    cv::Mat swapped;
    cv::cvtColor(pixelsOf(image), swapped, cv::COLOR_RGB2BGR);
    return swapped;
}

page::Sheet sheetOf(const DoccamSheet& sheet) {
    page::Sheet found;
    for (std::size_t i = 0; i < 4; ++i) {
        found.corners[i] = {sheet.corners[i][0], sheet.corners[i][1]};
    }
    // Anything else is no confidence.
    found.confidence = sheet.confidence >= 0 && sheet.confidence <= 1 ? sheet.confidence : 0;
    found.cut = sheet.cut != 0;
    return found;
}

DoccamSheet asSheet(const page::Sheet& found) {
    DoccamSheet sheet{};
    for (std::size_t i = 0; i < 4; ++i) {
        sheet.corners[i][0] = found.corners[i].x;
        sheet.corners[i][1] = found.corners[i].y;
    }
    sheet.confidence = found.confidence;
    sheet.cut = found.cut ? 1 : 0;
    return sheet;
}

// Far corners would make pages of any size.
bool isUsable(const page::Corners& corners) {
    return std::all_of(corners.begin(), corners.end(),
                       [](cv::Point2d corner) {
                           return std::abs(corner.x) <= 2.0 * DOCCAM_PAGE_MAX_SIDE &&
                                  std::abs(corner.y) <= 2.0 * DOCCAM_PAGE_MAX_SIDE;
                       }) &&
           page::isConvex(corners) && page::areaOf(corners) >= 1;
}

bool isPage(cv::Size size) {
    return size.width >= 1 && size.height >= 1 && size.width <= DOCCAM_PAGE_MAX_SIDE &&
           size.height <= DOCCAM_PAGE_MAX_SIDE &&
           std::int64_t{size.width} * size.height <= DOCCAM_PAGE_MAX_PIXELS;
}

// A result, with its pixels behind it.
struct OwnedPage : DoccamPage {
    cv::Mat pixelsHeld;
};

// One bit a pixel.
cv::Mat packed(const cv::Mat& picture) {
    cv::Mat bits = cv::Mat::zeros(picture.rows, (picture.cols + 7) / 8, CV_8U);
    for (int y = 0; y < picture.rows; ++y) {
        unsigned char* const row = bits.ptr(y);
        const unsigned char* const from = picture.ptr(y);
        for (int x = 0; x < picture.cols; ++x) {
            row[x / 8] |= static_cast<unsigned char>((from[x] != 0 ? 0x80 : 0) >> (x % 8));
        }
    }
    return bits;
}

// picture may be the caller's, whose pixels are then copied.
DoccamPage* asPage(const cv::Mat& picture, int pixels) {
    auto page = std::make_unique<OwnedPage>();
    page->pixelsHeld = pixels == DOCCAM_PIXELS_BITS ? packed(picture)
                       : picture.u == nullptr       ? picture.clone()
                                                    : picture;
    page->data = page->pixelsHeld.data;
    page->width = picture.cols;
    page->height = picture.rows;
    page->stride = page->pixelsHeld.step[0];
    page->pixels = pixels;
    return page.release();
}

// Runs action with the corners of sheet and the size of its page, if both may be.
template <typename Action>
int withPageOf(const DoccamImage* image, const DoccamSheet* sheet, const Action& action) noexcept {
    if (image == nullptr || sheet == nullptr) {
        return DOCCAM_PAGE_BAD_ARGUMENT;
    }
    if (!isValid(*image)) {
        return DOCCAM_PAGE_BAD_IMAGE;
    }
    return resultOf([&] {
        const page::Corners corners = sheetOf(*sheet).corners;
        if (!isUsable(corners)) {
            return DOCCAM_PAGE_BAD_SHEET;
        }
        const cv::Size size = page::rectifiedSize(corners, {image->width, image->height});
        if (!isPage(size)) {
            return DOCCAM_PAGE_BAD_SHEET;
        }
        action(corners, size);
        return 0;
    });
}

cv::Mat looking(const DoccamImage& image, int look, int colour) {
    cv::Mat picture = blueFirst(image);
    if (look == DOCCAM_LOOK_PAPER || colour == DOCCAM_COLOUR_BLACK_WHITE) {
        picture = colour == DOCCAM_COLOUR ? page::paperLook(picture) : page::greyPaperLook(picture);
    } else if (colour != DOCCAM_COLOUR && picture.channels() == 3) {
        cv::Mat grey; // picture's pixels may be the caller's
        cv::cvtColor(picture, grey, cv::COLOR_BGR2GRAY);
        picture = grey;
    }
    if (colour == DOCCAM_COLOUR_BLACK_WHITE) {
        picture = page::blackAndWhite(picture);
    } else if (colour == DOCCAM_COLOUR && image.pixels == DOCCAM_PIXELS_RGB) {
        cv::Mat swapped;
        cv::cvtColor(picture, swapped, cv::COLOR_BGR2RGB);
        picture = swapped;
    }
    return picture;
}

int pixelsFor(const DoccamImage& image, int colour) {
    switch (colour) {
    case DOCCAM_COLOUR_GREY:
        return DOCCAM_PIXELS_GREY;
    case DOCCAM_COLOUR_BLACK_WHITE:
        return DOCCAM_PIXELS_BITS;
    default:
        return image.pixels;
    }
}

} // namespace
} // namespace doccam

int doccam_find_sheets(const DoccamImage* image, const DoccamSheet* last, DoccamSheet* sheets,
                       int capacity) {
    if (image == nullptr || sheets == nullptr || capacity < 1) {
        return DOCCAM_PAGE_BAD_ARGUMENT;
    }
    if (!doccam::isValid(*image)) {
        return DOCCAM_PAGE_BAD_IMAGE;
    }
    return doccam::resultOf([&] {
        const cv::Mat picture = doccam::blueFirst(*image);
        std::vector<doccam::page::Sheet> found;
        if (last != nullptr && doccam::isUsable(doccam::sheetOf(*last).corners)) {
            found = doccam::page::findSheetAgain(picture, doccam::sheetOf(*last));
        }
        if (found.empty()) {
            found = doccam::page::findSheets(picture, static_cast<std::size_t>(capacity));
        }
        std::transform(found.begin(), found.end(), sheets, doccam::asSheet);
        return static_cast<int>(found.size());
    });
}

int doccam_rectify(const DoccamImage* image, const DoccamSheet* sheet, DoccamPage** page) {
    if (page == nullptr) {
        return DOCCAM_PAGE_BAD_ARGUMENT;
    }
    *page = nullptr;
    return doccam::withPageOf(image, sheet, [&](const doccam::page::Corners& corners, cv::Size) {
        *page =
            doccam::asPage(doccam::page::rectify(doccam::pixelsOf(*image), corners), image->pixels);
    });
}

int doccam_rectified_size(const DoccamImage* image, const DoccamSheet* sheet, int* width,
                          int* height) {
    if (width == nullptr || height == nullptr) {
        return DOCCAM_PAGE_BAD_ARGUMENT;
    }
    return doccam::withPageOf(image, sheet, [&](const doccam::page::Corners&, cv::Size size) {
        *width = size.width;
        *height = size.height;
    });
}

int doccam_look(const DoccamImage* page, int look, int colour, DoccamPage** result) {
    if (result != nullptr) {
        *result = nullptr;
    }
    if (page == nullptr || result == nullptr || look < DOCCAM_LOOK_PHOTO ||
        look > DOCCAM_LOOK_PAPER || colour < DOCCAM_COLOUR || colour > DOCCAM_COLOUR_BLACK_WHITE) {
        return DOCCAM_PAGE_BAD_ARGUMENT;
    }
    if (!doccam::isValid(*page)) {
        return DOCCAM_PAGE_BAD_IMAGE;
    }
    return doccam::resultOf([&] {
        *result =
            doccam::asPage(doccam::looking(*page, look, colour), doccam::pixelsFor(*page, colour));
        return 0;
    });
}

void doccam_page_free(DoccamPage* page) {
    const std::unique_ptr<doccam::OwnedPage> owned(static_cast<doccam::OwnedPage*>(page));
}

#include "docimage/clean/page_grey.h"

#include "base/pixel.h"
#include "docimage/clean/page_kernels.h"
#include "docimage/pixels/gamma.h"
#include "docimage/pixels/grey_weights.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <numeric>

namespace doccam {
namespace {

constexpr float kGamma = 0.4F;

// Each gamma-corrected sample's part of the grey level, including the half for rounding.
struct GammaWeights {
    GammaWeights() {
        const auto curve = gammaCurve(kGamma);
        for (std::size_t i = 0; i < curve.size(); ++i) {
            first[i] = kRedWeight * curve[i] + kGreyHalf;
            second[i] = kGreenWeight * curve[i];
            third[i] = kBlueWeight * curve[i];
        }
    }

    uchar greyOf(const uchar* pixel) const {
        return static_cast<uchar>((first[pixel[0]] + second[pixel[1]] + third[pixel[2]]) >>
                                  kGreyShift);
    }

    std::array<std::int32_t, kLevels> first{}, second{}, third{};
};

// Makes each grey row with makeRow(row of the page, row of the plane, levels to add to).
template <typename MakeRow>
PageGrey greyByRows(const cv::Mat& page, const MakeRow& makeRow) {
    PageGrey grey{WorkPlane(page.size())};
    grey.levels = levelsOfRows(page.rows, [&](int y, Levels& levels) {
        makeRow(page.ptr(y), grey.plane.rows().ptr(y), levels);
    });
    return grey;
}

void lift(const uchar* pixels, int count, const GammaWeights& weights, uchar* grey) {
    for (int x = 0; x < count; ++x, pixels += kChannels) {
        grey[x] = weights.greyOf(pixels);
    }
}

// Initially row marks dark pixels with 255. They are rare, so gaps are filled a block at a time.
void flatten(const uchar* pixels, int count, const GammaWeights& weights, uchar* row,
             Levels& levels) {
    constexpr uchar kSheet[kChannels] = {128, 128, 128};
    constexpr int kBlock = 32;
    const uchar sheet = weights.greyOf(kSheet);
    for (int first = 0; first < count; first += kBlock) {
        uchar* const block = row + first;
        const int length = std::min(kBlock, count - first);
        if (std::reduce(block, block + length, 0, std::bit_or<>()) == 0) {
            std::fill_n(block, length, sheet);
            levels[sheet] += length;
            continue;
        }
        for (int i = 0; i < length; ++i) {
            const uchar* const pixel = pixels + std::ptrdiff_t{kChannels} * (first + i);
            block[i] = block[i] != 0 ? weights.greyOf(pixel) : sheet;
            ++levels[block[i]];
        }
    }
}

} // namespace

PageGrey greyOf(const cv::Mat& page) {
    return greyByRows(page, [&](const uchar* pixels, uchar* grey, Levels& levels) {
        for (int x = 0; x < page.cols; ++x, pixels += kChannels) {
            grey[x] = greyLevel(pixels[0], pixels[1], pixels[2]);
        }
        countLevels(grey, page.cols, levels);
    });
}

PageGrey gammaGrey(const cv::Mat& page) {
    const GammaWeights weights;
    return greyByRows(page, [&](const uchar* pixels, uchar* grey, Levels& levels) {
        lift(pixels, page.cols, weights, grey);
        countLevels(grey, page.cols, levels);
    });
}

PageGrey nearBlackGrey(const cv::Mat& page) {
    const GammaWeights weights;
    return greyByRows(page, [&](const uchar* pixels, uchar* grey, Levels& levels) {
        widestKernels<allPageKernels>().markDark(pixels, page.cols, grey);
        flatten(pixels, page.cols, weights, grey, levels);
    });
}

} // namespace doccam

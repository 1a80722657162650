#include "docimage/page_grey.h"

#include "base/strips.h"
#include "docimage/gamma_curve.h"
#include "docimage/grey_weights.h"

#include <array>
#include <cstdint>

namespace doccam {
namespace {

constexpr float kGamma = 0.4F;
constexpr int kChannels = 3;

// What a sample of a lifted pixel adds to its grey level, the half for rounding included.
struct LiftedWeights {
    LiftedWeights() {
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

// Makes each grey row by makeRow(row of the page, row of the plane), and counts levels.
template <typename MakeRow>
PageGrey greyByRows(const cv::Mat& page, const MakeRow& makeRow) {
    PageGrey grey{WorkPlane::unset(page.size())};
    cv::Mat& rows = grey.plane.rows();
    const Strips strips(page.rows);
    std::array<Levels, Strips::kMost> levels{};
    forEachStrip(strips, [&](cv::Range part, int number) {
        for (int y = part.start; y < part.end; ++y) {
            makeRow(page.ptr(y), rows.ptr(y));
            countLevels(rows.ptr(y), rows.cols, levels[static_cast<std::size_t>(number)]);
        }
    });
    for (const Levels& part : levels) {
        addLevels(part, grey.levels);
    }
    return grey;
}

// Rounded down, the mean of the pixel's samples is above 30.
bool isSheet(const uchar* pixel) {
    constexpr int kDarkestSum = 93;
    return pixel[0] + pixel[1] + pixel[2] >= kDarkestSum;
}

} // namespace

PageGrey greyOf(const cv::Mat& page) {
    return greyByRows(page, [&](const uchar* pixels, uchar* grey) {
        for (int x = 0; x < page.cols; ++x, pixels += kChannels) {
            grey[x] = greyLevel(pixels[0], pixels[1], pixels[2]);
        }
    });
}

PageGrey liftedGrey(const cv::Mat& page) {
    const LiftedWeights weights;
    return greyByRows(page, [&](const uchar* pixels, uchar* grey) {
        for (int x = 0; x < page.cols; ++x, pixels += kChannels) {
            grey[x] = weights.greyOf(pixels);
        }
    });
}

PageGrey flattenedGrey(const cv::Mat& page) {
    constexpr uchar kSheet[kChannels] = {128, 128, 128};
    const LiftedWeights weights;
    const uchar sheet = weights.greyOf(kSheet);
    return greyByRows(page, [&](const uchar* pixels, uchar* grey) {
        for (int x = 0; x < page.cols; ++x, pixels += kChannels) {
            grey[x] = isSheet(pixels) ? sheet : weights.greyOf(pixels);
        }
    });
}

} // namespace doccam

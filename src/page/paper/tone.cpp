// Dividing a page by its light.
#include "page/paper/tone.h"

#include "base/shared_work.h"
#include "page/paper/stretched_grid.h"
#include "page/paper/tone_kernels.h"

#include <algorithm>
#include <cstdint>

namespace doccam::page {

namespace {

constexpr float kHighestGain = 65535;
constexpr float kPaperLift = 0.03F; // makes noise of paper white
constexpr float kDarkLift = 0.08F;  // more in the dark, which is noisier
constexpr float kDark = 110;

// What each sample is multiplied with.
cv::Mat gains(const Illumination& illumination) {
    cv::Mat gain(illumination.light.size(), CV_16UC(illumination.light.channels()));
    const int channels = gain.channels();
    for (int y = 0; y < gain.rows; ++y) {
        const auto* light = illumination.light.ptr<float>(y);
        const auto* paper = illumination.paper.ptr<float>(y);
        auto* row = gain.ptr<std::uint16_t>(y);
        for (int i = 0; i < gain.cols * channels; ++i) {
            const float level = std::max(light[i], 1.0F);
            const float lift = kPaperLift + kDarkLift * std::max(1 - level / kDark, 0.0F);
            row[i] = static_cast<std::uint16_t>(std::min(
                kHighestGain, 255 * kGainOne * (1 + lift * paper[i / channels]) / level + 0.5F));
        }
    }
    return gain;
}

} // namespace

cv::Mat evened(const cv::Mat& page, const Illumination& illumination) {
    const int channels = page.channels();
    const cv::Mat gain = gains(illumination);
    cv::Mat shares;
    illumination.paper.convertTo(shares, CV_16U, kShareOne);
    cv::Mat even(page.size(), page.type());
    const auto evenRow = widestKernels<allToneKernels>().evenRow;
    forEachStrip(Strips(page.rows), [&](const cv::Range& rows, int) {
        StretchedGrid gainRows(gain, illumination.scale, page.cols, channels);
        StretchedGrid paperRows(shares, illumination.scale, page.cols, channels);
        for (int y = rows.start; y < rows.end; ++y) {
            evenRow(page.ptr<unsigned char>(y), gainRows.row(y), paperRows.row(y),
                    page.cols * channels, even.ptr<unsigned char>(y));
        }
    });
    return even;
}

} // namespace doccam::page

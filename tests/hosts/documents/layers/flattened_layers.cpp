#include "flattened_layers.h"

#include "documents/layers/fax_size.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace doccam::test {

cv::Mat photographed(const virtualcam::PrintedPage& print) {
    constexpr double kMillimetresPerInch = 25.4;
    const double dotsPerMillimetre = kPageDpi / kMillimetresPerInch;
    cv::Mat page;
    cv::resize(print.picture, page,
               {cvRound(print.millimetres.width * dotsPerMillimetre),
                cvRound(print.millimetres.height * dotsPerMillimetre)},
               0, 0, cv::INTER_AREA);
    cv::GaussianBlur(page, page, {}, 0.5);
    cv::Mat noise(page.size(), CV_16SC3);
    cv::RNG(1).fill(noise, cv::RNG::NORMAL, 0, 2);
    cv::add(page, noise, page, cv::noArray(), CV_8U);
    return page;
}

cv::Mat flattened(const host::Layers& layers, cv::Size size) {
    cv::Mat page(size, CV_8UC3, cv::Scalar::all(255));
    if (!layers.background.empty()) {
        cv::resize(cv::imdecode(layers.background, cv::IMREAD_COLOR), page, size, 0, 0,
                   cv::INTER_LINEAR);
    }
    for (const host::Ink& ink : layers.inks) {
        cv::Mat mask;
        cv::resize(ink.mask, mask, size, 0, 0, cv::INTER_NEAREST);
        page.setTo(cv::Scalar(ink.colour), mask);
    }
    return page;
}

std::size_t bytesOf(const host::Layers& layers) {
    std::size_t bytes = layers.background.size();
    for (const host::Ink& ink : layers.inks) {
        bytes += host::faxSize(ink.mask);
    }
    return bytes;
}

} // namespace doccam::test

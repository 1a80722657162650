// Giving pages a look, against encoding them as JPEG: nobody should wait for it.
#include "page/look.h"
#include "row.h"

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <memory>
#include <vector>

namespace doccam::bench {
namespace {

constexpr double kBound = 1.5;
constexpr double kPageShare = 0.8; // of the frame's width and height, about five megapixels

// A page of print and a picture, the camera's own, in light that falls off towards a corner.
cv::Mat seenPage(const Picture& picture) {
    const cv::Size size(static_cast<int>(kWidth * kPageShare),
                        static_cast<int>(kHeight * kPageShare));
    cv::Mat page(size, CV_8UC3, cv::Scalar::all(255));
    for (int y = 120; y < size.height - 60; y += 44) {
        cv::putText(page, "The ferry to the island leaves at noon and comes back before dark.",
                    {100, y}, cv::FONT_HERSHEY_COMPLEX, 1.0, cv::Scalar::all(20), 2, cv::LINE_AA);
    }
    cv::Mat photograph;
    cv::resize(picture.pixels, photograph, {800, 600}, 0, 0, cv::INTER_AREA);
    photograph.copyTo(page(cv::Rect(size.width - 1000, 500, 800, 600)));
    cv::Mat light(2, 2, CV_32FC3, cv::Scalar(0.6, 0.75, 0.85));
    light.at<cv::Vec3f>(1, 1) *= 0.5F;
    cv::resize(light, light, size, 0, 0, cv::INTER_LINEAR);
    cv::multiply(page, light, page, 1, CV_8U);
    cv::Mat noise(size, CV_16SC3);
    cv::RNG(1).fill(noise, cv::RNG::NORMAL, 0, 2);
    cv::add(page, noise, page, cv::noArray(), CV_8U);
    return page;
}

// Most of the page is blank paper, which looks white, and some of it is ink.
bool isPaper(const cv::Mat& look, const cv::Mat& page) {
    const double samples = static_cast<double>(look.total()) * look.channels();
    const int white = cv::countNonZero(look.reshape(1) >= 252);
    const int dark = cv::countNonZero(look.reshape(1) < 64);
    return look.size() == page.size() && white > 0.6 * samples && dark > 0.01 * samples;
}

Contest looking(const Picture& picture, cv::Mat (*look)(const cv::Mat&)) {
    const cv::Mat page = seenPage(picture);
    const auto result = std::make_shared<cv::Mat>();
    const auto jpeg = std::make_shared<std::vector<unsigned char>>();
    return {
        .ours = [=] { *result = look(page); },
        .peer =
            [=] {
                cv::imencode(".jpg", page, *jpeg, {cv::IMWRITE_JPEG_QUALITY, 85});
            },
        .same = [=] { return isPaper(*result, page) && !jpeg->empty(); },
    };
}

cv::Mat blackAndWhiteLook(const cv::Mat& page) {
    return page::blackAndWhite(page::greyPaperLook(page));
}

Row row(const char* name, cv::Mat (*look)(const cv::Mat&)) {
    return {.name = name,
            .peer = "encoding the page as JPEG",
            .bound = kBound,
            .contest = [look](const Picture& picture) { return looking(picture, look); }};
}

const Entry colour(row("paper look, colour", page::paperLook));
const Entry grey(row("paper look, grey", page::greyPaperLook));
const Entry blackWhite(row("paper look, black and white", blackAndWhiteLook));

} // namespace
} // namespace doccam::bench

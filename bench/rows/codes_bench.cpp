// Reading all codes of a picture of the camera's full size, against both readers alone.
#include "codes/readers/reader.h"
#include "row.h"
#include "unit/barcode/code_drawing.h"

#include <doccam/codes.h>

#include <opencv2/imgproc.hpp>

#include <cstddef>
#include <memory>

namespace doccam::bench {
namespace {

constexpr double kSeconds = 1;
constexpr std::size_t kCodes = 4;

// A QR code and a bar code beside those that the drawn scene has.
cv::Mat withCodes(const cv::Mat& pixels) {
    cv::Mat grey;
    cv::cvtColor(pixels, grey, cv::COLOR_RGB2GRAY);
    const cv::Mat matrix = test::drawCode(test::qrCode("https://example.org/page/1"), 6);
    const cv::Mat bars = test::drawCode(test::code128("DOC-0001"), 4);
    matrix.copyTo(grey(cv::Rect({600, 500}, matrix.size())));
    bars.copyTo(grey(cv::Rect({1600, 1400}, bars.size())));
    return grey;
}

std::size_t readByHost(const cv::Mat& grey) {
    const DoccamImage image{grey.data, grey.cols, grey.rows, grey.step, DOCCAM_PIXELS_GREY};
    DoccamCodes* codes = nullptr;
    doccam_read_codes(&image, DOCCAM_SYMBOLOGIES_ALL, kSeconds, &codes);
    const std::size_t count = codes != nullptr ? codes->count : 0;
    doccam_codes_free(codes);
    return count;
}

Contest reading(const Picture& picture) {
    const auto grey = std::make_shared<cv::Mat>(withCodes(picture.pixels));
    const auto ours = std::make_shared<std::size_t>();
    const auto theirs = std::make_shared<std::size_t>();
    return {
        .ours = [=] { *ours = readByHost(*grey); },
        .peer =
            [=] {
                *theirs = codes::readWithZxing(*grey, codes::kEverySymbology).size();
                codes::readWithZbar(*grey, codes::kEverySymbology);
            },
        .same = [=] { return *ours == kCodes && *theirs == kCodes; },
    };
}

const Entry entry({.name = "read all codes",
                   .peer = "zbar and zxing, one after the other",
                   .bound = 1.5,
                   .contest = reading,
                   .rounds = 10});

} // namespace
} // namespace doccam::bench

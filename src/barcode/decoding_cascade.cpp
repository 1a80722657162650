#include "barcode/decoding_cascade.h"

#include "base/pixel.h"

#include <opencv2/imgproc.hpp>

#include <cstdio>

namespace doccam {

std::string scanOnce(const cv::Mat& grey, CodeKind wanted) {
    const CodeScan scan = scanForCode(grey, wanted);
    if (!scan.anySymbol) {
        std::puts("No BarQrCode!!\r");
    }
    return scan.text;
}

std::string readCodeInBinary(const cv::Mat& bin, CodeKind wanted) {
    std::string text = scanOnce(bin, wanted);
    if (text.empty()) {
        const cv::Mat square = cv::getStructuringElement(cv::MORPH_RECT, cv::Size(3, 3));
        cv::Mat opened;
        cv::morphologyEx(bin, opened, cv::MORPH_OPEN, square, cv::Point(-1, -1), 1,
                         cv::BORDER_CONSTANT, cv::morphologyDefaultBorderValue());
        text = scanOnce(opened, wanted);
    }
    return text;
}

std::string readCodeInGrey(const cv::Mat& grey, CodeKind wanted) {
    constexpr int kAdaptiveBlock = 33;
    constexpr int kStep = 20;
    constexpr int kHighest = 239;
    cv::Mat bin;
    const auto otsu =
        static_cast<int>(cv::threshold(grey, bin, 0, kWhite, cv::THRESH_BINARY | cv::THRESH_OTSU));
    std::string text = readCodeInBinary(bin, wanted);
    if (text.empty()) {
        cv::adaptiveThreshold(grey, bin, kWhite, cv::ADAPTIVE_THRESH_GAUSSIAN_C, cv::THRESH_BINARY,
                              kAdaptiveBlock, 0);
        text = readCodeInBinary(bin, wanted);
    }
    // Starts with Otsu's threshold again.
    for (int level = otsu; text.empty() && level <= kHighest; level += kStep) {
        cv::threshold(grey, bin, level, kWhite, cv::THRESH_BINARY);
        text = readCodeInBinary(bin, wanted);
    }
    return text;
}

std::string readCodeOnFrame(const cv::Mat& frame, CodeKind wanted) {
    std::puts("BarQrDecodePro start\r");
    cv::Mat grey;
    cv::cvtColor(frame, grey, cv::COLOR_RGB2GRAY);
    std::string text = readCodeInGrey(grey, wanted);
    std::puts("BarQrDecodePro end\r");
    return text;
}

} // namespace doccam

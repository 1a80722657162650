// Reading a code from a frame: one way of making it binary after the other.
#include "barcode/code_scan.h"
#include "barcode/threshold_ladder.h"

#include <doccam/doccam.hpp>

#include <opencv2/imgproc.hpp>

#include <cstdio>

namespace {

constexpr int kWhite = 255;
constexpr int kAdaptiveBlock = 33;

} // namespace

std::string ZbarDecoder(cv::Mat gray, int mode) {
    const doccam::CodeScan scan = doccam::scanForCode(gray, doccam::codeKind(mode));
    if (!scan.anySymbol) {
        std::puts("No BarQrCode!!\r");
    }
    return scan.text;
}

std::string GetQRInBinImg(cv::Mat bin, int mode) {
    std::string text = ZbarDecoder(bin, mode);
    if (text.empty()) {
        const cv::Mat square = cv::getStructuringElement(cv::MORPH_RECT, cv::Size(3, 3));
        cv::Mat opened;
        cv::morphologyEx(bin, opened, cv::MORPH_OPEN, square, cv::Point(-1, -1), 1,
                         cv::BORDER_CONSTANT, cv::morphologyDefaultBorderValue());
        text = ZbarDecoder(opened, mode);
    }
    return text;
}

std::string GetQR(cv::Mat gray, int mode) {
    cv::Mat bin;
    const auto otsu =
        static_cast<int>(cv::threshold(gray, bin, 0, kWhite, cv::THRESH_BINARY | cv::THRESH_OTSU));
    std::string text = GetQRInBinImg(bin, mode);
    if (text.empty()) {
        cv::adaptiveThreshold(gray, bin, kWhite, cv::ADAPTIVE_THRESH_GAUSSIAN_C, cv::THRESH_BINARY,
                              kAdaptiveBlock, 0);
        text = GetQRInBinImg(bin, mode);
    }
    // Begins with Otsu's picture once more.
    for (const int level : doccam::thresholdLadder(otsu)) {
        if (!text.empty()) {
            break;
        }
        cv::threshold(gray, bin, level, kWhite, cv::THRESH_BINARY);
        text = GetQRInBinImg(bin, mode);
    }
    return text;
}

std::string BarQrDecodePro(cv::Mat frame, int mode) {
    std::puts("BarQrDecodePro start\r");
    cv::Mat gray;
    cv::cvtColor(frame, gray, cv::COLOR_RGB2GRAY);
    std::string text = GetQR(gray, mode);
    std::puts("BarQrDecodePro end\r");
    return text;
}

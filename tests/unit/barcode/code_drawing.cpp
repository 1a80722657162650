#include "code_drawing.h"

#include <opencv2/imgproc.hpp>
#include <zint.h>

#include <memory>
#include <stdexcept>

namespace doccam::test {
namespace {

struct SymbolRelease {
    void operator()(zint_symbol* symbol) const { ZBarcode_Delete(symbol); }
};

using Symbol = std::unique_ptr<zint_symbol, SymbolRelease>;

constexpr float kPixelsAtScaleOne = 2.0F;
constexpr int kExtraMargin =
    4; // modules; zint leaves some kinds without a quiet zone above and below

Symbol prepare(const Code& code, int pixelsPerModule) {
    Symbol symbol(ZBarcode_Create());
    symbol->symbology = code.symbology;
    symbol->scale = static_cast<float>(pixelsPerModule) / kPixelsAtScaleOne;
    symbol->show_hrt = 0;
    symbol->output_options |= BARCODE_QUIET_ZONES;
    symbol->whitespace_width = kExtraMargin;
    symbol->whitespace_height = kExtraMargin;
    symbol->input_mode = code.inputMode;
    symbol->option_1 = code.errorLevel;
    symbol->option_2 = code.version;
    return symbol;
}

} // namespace

cv::Mat drawCode(const Code& code, int pixelsPerModule) {
    const Symbol symbol = prepare(code, pixelsPerModule);
    std::string payload = code.payload;
    const int result =
        ZBarcode_Encode_and_Buffer(symbol.get(), reinterpret_cast<unsigned char*>(payload.data()),
                                   static_cast<int>(payload.size()), 0);
    if (result >= ZINT_ERROR) {
        throw std::runtime_error(symbol->errtxt);
    }
    const cv::Mat view(symbol->bitmap_height, symbol->bitmap_width, CV_8UC3, symbol->bitmap);
    cv::Mat grey;
    cv::cvtColor(view, grey, cv::COLOR_RGB2GRAY);
    return grey;
}

cv::Mat withSpecks(const cv::Mat& drawn) {
    cv::Mat specked = drawn.clone();
    for (int y = 0; y < specked.rows; ++y) {
        for (int x = 2 * y % 5; x < specked.cols; x += 5) {
            specked.at<unsigned char>(y, x) = 255;
        }
    }
    return specked;
}

Code qrCode(const std::string& text, int errorLevel, int version) {
    return {BARCODE_QRCODE, text, text, errorLevel, version, DATA_MODE};
}

Code code128(const std::string& text) {
    return {BARCODE_CODE128, text, text};
}

std::string withCheckDigit(const std::string& digits) {
    int sum = 0;
    int weight = 3;
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        sum += weight * (*digit - '0');
        weight = 4 - weight;
    }
    return digits + std::to_string((10 - sum % 10) % 10);
}

} // namespace doccam::test

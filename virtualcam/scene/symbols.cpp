#include "scene/symbols.h"

#include <opencv2/imgproc.hpp>
#include <zint.h>

#include <memory>
#include <stdexcept>

namespace doccam::virtualcam {

namespace {

struct SymbolDeleter {
    void operator()(zint_symbol* symbol) const { ZBarcode_Delete(symbol); }
};

cv::Mat draw(int symbology, const std::string& text, int moduleSize, float height) {
    const std::unique_ptr<zint_symbol, SymbolDeleter> symbol(ZBarcode_Create());
    symbol->symbology = symbology;
    symbol->scale = static_cast<float>(moduleSize) / 2.0F;
    symbol->output_options |= BARCODE_QUIET_ZONES;
    symbol->show_hrt = 0;
    symbol->height = height;
    std::string input = text;
    const int result =
        ZBarcode_Encode_and_Buffer(symbol.get(), reinterpret_cast<unsigned char*>(input.data()),
                                   static_cast<int>(input.size()), 0);
    if (result >= ZINT_ERROR) {
        throw std::runtime_error(std::string("cannot draw a symbol: ") + symbol->errtxt);
    }
    const cv::Mat view(symbol->bitmap_height, symbol->bitmap_width, CV_8UC3, symbol->bitmap);
    return view.clone();
}

} // namespace

cv::Mat drawQrCode(const std::string& text, int moduleSize) {
    return draw(BARCODE_QRCODE, text, moduleSize, 0);
}

cv::Mat drawCode128(const std::string& text, int moduleSize) {
    return draw(BARCODE_CODE128, text, moduleSize, 40);
}

} // namespace doccam::virtualcam

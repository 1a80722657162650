#include "barcode/code_scan.h"

#include "base/handles/zbar_handles.h"

#include <new>

namespace doccam {
namespace {

template <typename Handle>
Handle orOutOfMemory(Handle handle) {
    if (!handle) {
        throw std::bad_alloc();
    }
    return handle;
}

ZbarScanner makeScanner() {
    auto scanner = orOutOfMemory(ZbarScanner(zbar::zbar_image_scanner_create()));
    zbar::zbar_image_scanner_set_config(scanner.get(), zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 1);
    return scanner;
}

// Refers to the pixels of grey, which must be continuous.
ZbarPicture makePicture(const cv::Mat& grey) {
    auto picture = orOutOfMemory(ZbarPicture(zbar::zbar_image_create()));
    zbar::zbar_image_set_size(picture.get(), static_cast<unsigned>(grey.cols),
                              static_cast<unsigned>(grey.rows));
    zbar::zbar_image_set_format(picture.get(), zbar_fourcc('Y', '8', '0', '0'));
    zbar::zbar_image_set_data(picture.get(), grey.data, grey.total(), nullptr);
    return picture;
}

std::string firstText(const zbar::zbar_image_t* picture, CodeKind wanted) {
    const auto* symbols = zbar::zbar_image_get_symbols(picture);
    for (const auto* symbol = zbar::zbar_symbol_set_first_symbol(symbols); symbol != nullptr;
         symbol = zbar::zbar_symbol_next(symbol)) {
        const bool isQr = zbar::zbar_symbol_get_type(symbol) == zbar::ZBAR_QRCODE;
        if (isQr == (wanted == CodeKind::kQr)) {
            return {zbar::zbar_symbol_get_data(symbol), zbar::zbar_symbol_get_data_length(symbol)};
        }
    }
    return {};
}

} // namespace

CodeScan scanForCode(const cv::Mat& grey, CodeKind wanted) {
    if (grey.empty() || grey.dims != 2 || grey.type() != CV_8UC1) {
        return {};
    }
    const cv::Mat packed = grey.isContinuous() ? grey : grey.clone();
    const ZbarScanner scanner = makeScanner();
    const ZbarPicture picture = makePicture(packed);
    if (zbar::zbar_scan_image(scanner.get(), picture.get()) < 1) {
        return {};
    }
    return {true, firstText(picture.get(), wanted)};
}

} // namespace doccam

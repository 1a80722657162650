#include "plain/barcode_file.h"

#include "base/handles/zbar_handles.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace doccam::plain {

std::string codeInFile(const std::string& path) {
    cv::Mat grey;
    cv::cvtColor(cv::imread(path, cv::IMREAD_COLOR), grey, cv::COLOR_BGR2GRAY);
    const ZbarScanner scanner(zbar::zbar_image_scanner_create());
    const ZbarPicture picture(zbar::zbar_image_create());
    zbar::zbar_image_set_size(picture.get(), static_cast<unsigned>(grey.cols),
                              static_cast<unsigned>(grey.rows));
    zbar::zbar_image_set_format(picture.get(), zbar_fourcc('Y', '8', '0', '0'));
    zbar::zbar_image_set_data(picture.get(), grey.data, grey.total(), nullptr);
    zbar::zbar_scan_image(scanner.get(), picture.get());
    const auto* symbol = zbar::zbar_image_first_symbol(picture.get());
    while (symbol != nullptr && zbar::zbar_symbol_get_type(symbol) != zbar::ZBAR_QRCODE) {
        symbol = zbar::zbar_symbol_next(symbol);
    }
    return symbol == nullptr ? std::string()
                             : std::string(zbar::zbar_symbol_get_data(symbol),
                                           zbar::zbar_symbol_get_data_length(symbol));
}

} // namespace doccam::plain

#include "plain_scan.h"

#include <zbar.h>

namespace doccam::test {

std::vector<std::pair<std::string, std::string>> symbolsIn(const cv::Mat& grey) {
    zbar::ImageScanner scanner;
    scanner.set_config(zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 1);
    zbar::Image image(static_cast<unsigned>(grey.cols), static_cast<unsigned>(grey.rows), "Y800",
                      grey.data, grey.total());
    scanner.scan(image);
    std::vector<std::pair<std::string, std::string>> symbols;
    for (auto symbol = image.symbol_begin(); symbol != image.symbol_end(); ++symbol) {
        symbols.emplace_back(symbol->get_type_name(), symbol->get_data());
    }
    image.set_data(nullptr, 0);
    return symbols;
}

} // namespace doccam::test

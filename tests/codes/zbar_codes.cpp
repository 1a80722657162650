// What zbar alone reads.
#include "code_readers.h"

#include <zbar.h>

namespace doccam::test {

namespace {

bool isAddon(zbar::zbar_symbol_type_t type) {
    return type == zbar::ZBAR_EAN2 || type == zbar::ZBAR_EAN5;
}

// zbar joins a code and its add-on in a symbol made of the two.
ReportedCode fromZbar(const zbar::Symbol& symbol) {
    if (symbol.get_type() != zbar::ZBAR_COMPOSITE) {
        return {symbol.get_data(), {}};
    }
    ReportedCode code;
    const zbar::SymbolSet parts = symbol.get_components();
    for (auto part = parts.symbol_begin(); part != parts.symbol_end(); ++part) {
        (isAddon(part->get_type()) ? code.addon : code.text) = part->get_data();
    }
    return code;
}

} // namespace

std::vector<ReportedCode> readByZbar(const cv::Mat& grey) {
    zbar::ImageScanner scanner;
    scanner.set_config(zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 1);
    scanner.set_config(zbar::ZBAR_NONE, zbar::ZBAR_CFG_POSITION, 1);
    scanner.set_config(zbar::ZBAR_NONE, zbar::ZBAR_CFG_TEST_INVERTED, 1);
    zbar::Image image(static_cast<unsigned>(grey.cols), static_cast<unsigned>(grey.rows), "Y800",
                      grey.data, grey.total());
    scanner.scan(image);
    std::vector<ReportedCode> codes;
    for (auto symbol = image.symbol_begin(); symbol != image.symbol_end(); ++symbol) {
        codes.push_back(fromZbar(*symbol));
    }
    image.set_data(nullptr, 0);
    return codes;
}

} // namespace doccam::test

#include "documents/document_report.h"

#include <cmath>

namespace doccam::host {
namespace {

double tenths(double value) {
    constexpr double kTenths = 10;
    return std::round(value * kTenths) / kTenths;
}

Json asJson(const SizedPage& page) {
    Json row{{"width", tenths(page.size.width)}, {"height", tenths(page.size.height)}};
    if (page.dpi > 0) {
        row["dpi"] = tenths(page.dpi);
        row["dpi_from"] = nameOf(page.from);
    }
    return row;
}

} // namespace

Json asJson(const std::vector<SizedPage>& pages) {
    Json array = Json::array();
    for (const SizedPage& page : pages) {
        array.push_back(asJson(page));
    }
    return array;
}

std::string sizeText(const std::vector<SizedPage>& pages) {
    if (pages.empty()) {
        return "";
    }
    const SizedPage& page = pages.front();
    return std::to_string(std::lround(page.size.width)) + " x " +
           std::to_string(std::lround(page.size.height)) + " mm" +
           (page.dpi > 0 && !page.isKnown() ? ", guessed" : "");
}

} // namespace doccam::host

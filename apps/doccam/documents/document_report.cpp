#include "documents/document_report.h"

#include "pages/sheet_json.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace doccam::host {
Json asJson(const std::vector<SizedPage>& pages) {
    Json array = Json::array();
    for (const SizedPage& page : pages) {
        Json row = asJson(page);
        if (page.dpi == 0) { // of a PDF
            row.erase("dpi");
            row.erase("dpi_from");
        }
        array.push_back(std::move(row));
    }
    return array;
}

std::string sizeText(const std::vector<SizedPage>& pages) {
    if (pages.empty()) {
        return "";
    }
    const SizedPage& page = pages.front();
    if (std::any_of(pages.begin(), pages.end(),
                    [&](const SizedPage& other) { return !(other.size == page.size); })) {
        return "of several sizes";
    }
    return std::to_string(std::lround(page.size.width)) + " x " +
           std::to_string(std::lround(page.size.height)) + " mm" +
           (page.dpi > 0 && !page.isKnown() ? ", guessed" : "");
}

} // namespace doccam::host

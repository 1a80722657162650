// What a command says of a document's pages.
#pragma once

#include "documents/document_making.h"
#include "host/own_output.h"

#include <string>

namespace doccam::host {

// {"dpi", "dpi_from", "mm": [width, height]} of each page; of a PDF's page only its size.
Json asJson(const std::vector<SizedPage>& pages);

// "210 x 297 mm", with "guessed" if it is; of the first page.
std::string sizeText(const std::vector<SizedPage>& pages);

} // namespace doccam::host

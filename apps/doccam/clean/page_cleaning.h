// Making pages of picture files with the page engine.
#pragma once

#include "clean/clean_options.h"
#include "documents/paper/page_size.h"
#include "host/context.h"
#include "pages/sheets.h"
#include "pictures/written_file.h"

#include <optional>
#include <vector>

namespace doccam::host {

struct CleanedPage {
    std::optional<FoundSheet> sheet; // none: of the whole picture
    WrittenFile written;
    SizedPage sized;
};

// Writes a page of file's surest sheet, of each sheet, or of the whole picture, made in a process
// apart; none if no sheet was found. Throws Failure, and then no page is left.
std::vector<CleanedPage> cleanPages(const Context& context, const std::string& file,
                                    const CleanOptions& options);

} // namespace doccam::host

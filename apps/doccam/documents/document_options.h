// What the user says of a document.
#pragma once

#include "documents/paper/page_sizing.h"
#include "documents/text/recognition.h"

#include <ctime>
#include <optional>
#include <set>
#include <string>

namespace doccam::host {

struct DocumentOptions {
    PaperOptions paper{}; // of pages whose size is not known otherwise
    TextOptions text{};
    bool compact = false;
    std::string title{};
    std::string author{};
    std::string language{};
    std::optional<std::time_t> date{};
};

// Takes from known what was not given by its option, "--title" and so on; not the paper.
void adopt(DocumentOptions& options, const DocumentOptions& known,
           const std::set<std::string>& given);

} // namespace doccam::host

// What the user says of a document.
#pragma once

#include "documents/paper/page_sizing.h"
#include "documents/text/recognition.h"

#include <ctime>
#include <optional>
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

} // namespace doccam::host

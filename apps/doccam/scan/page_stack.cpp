#include "scan/page_stack.h"

#include "pictures/written_file.h"

#include <filesystem>

namespace doccam::host {

const ScannedPage& PageStack::take(bool crop) {
    const std::string path = file_.part("scan" + std::to_string(pages_.size() + 1) + ".jpg");
    session_.still(path, crop);
    const WrittenFile written = describeFile(path);
    return pages_.emplace_back(ScannedPage{path, written.width, written.height, crop});
}

void PageStack::discardLast() {
    std::error_code ignored;
    std::filesystem::remove(pages_.back().path, ignored);
    pages_.pop_back();
}

} // namespace doccam::host

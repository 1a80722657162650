// The files of the page, compiled in.
#pragma once

#include <span>
#include <string_view>

namespace doccam::serve {

struct PageFile {
    std::string_view path; // as in the address: "/style.css"
    std::string_view type;
    std::string_view content;
};

std::span<const PageFile> pageFiles();

} // namespace doccam::serve

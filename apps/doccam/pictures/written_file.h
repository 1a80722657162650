// A command's report on a picture or PDF that it has written.
#pragma once

#include "host/own_output.h"

#include <opencv2/core.hpp>

#include <cstdint>
#include <string>

namespace doccam::host {

struct WrittenFile {
    std::string path;
    int width = 0; // pixels; 0 for a PDF
    int height = 0;
    std::uintmax_t bytes = 0;
};

// Throws Failure unless pictures or PDFs can be written with name's extension.
void refuseUnknownType(const std::string& name);

// What this process has made itself, of frames: it may be decoded for its size.
WrittenFile describeFile(const std::string& path);

// A picture of that size, or a PDF, which has none.
WrittenFile describeFile(const std::string& path, cv::Size size);

// "page.jpg  3264x2448  1234567 bytes"
std::string asText(const WrittenFile& file);
Json asJson(const WrittenFile& file);

} // namespace doccam::host

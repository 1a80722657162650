#include "host/progress_line.h"

#include "host/own_output.h"

#include <unistd.h>

#include <cstdio>

namespace doccam::host {
namespace {

constexpr const char* kOverwrite = "\r\033[K";

} // namespace

ProgressLine::ProgressLine()
  : terminal_(isatty(fileno(err())) == 1) {}

ProgressLine::~ProgressLine() {
    if (open_) {
        std::fputc('\n', err());
    }
}

void ProgressLine::show(const std::string& text) {
    std::fprintf(err(), terminal_ ? "%s%s" : "%s%s\n", terminal_ ? kOverwrite : "", text.c_str());
    std::fflush(err());
    open_ = terminal_;
}

} // namespace doccam::host

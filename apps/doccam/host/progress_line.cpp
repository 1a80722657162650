#include "host/progress_line.h"

#include <unistd.h>

#include <cstdio>

namespace doccam::host {
namespace {

constexpr const char* kOverwrite = "\r\033[K";

} // namespace

ProgressLine::ProgressLine()
  : terminal_(isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
    if (open_) {
        std::fputc('\n', stderr);
    }
}

void ProgressLine::show(const std::string& text) {
    std::fprintf(stderr, terminal_ ? "%s%s" : "%s%s\n", terminal_ ? kOverwrite : "", text.c_str());
    std::fflush(stderr);
    open_ = terminal_;
}

} // namespace doccam::host

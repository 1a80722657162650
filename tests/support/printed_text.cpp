#include "support/printed_text.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>

namespace doccam::test {

PrintedText::PrintedText(Stream stream)
  : descriptor_(static_cast<int>(stream)) {
    std::fflush(nullptr);
    saved_ = dup(descriptor_);
    file_ = memfd_create("printed", 0);
    dup2(file_, descriptor_);
}

PrintedText::~PrintedText() {
    restore();
    close(file_);
}

std::string PrintedText::soFar() {
    std::fflush(nullptr);
    std::string text;
    char chunk[4096];
    for (ssize_t n = 0;
         (n = pread(file_, chunk, sizeof chunk, static_cast<off_t>(text.size()))) > 0;) {
        text.append(chunk, static_cast<std::size_t>(n));
    }
    return text;
}

std::string PrintedText::take() {
    std::string text = soFar();
    restore();
    return text;
}

void PrintedText::restore() {
    if (saved_ >= 0) {
        std::fflush(nullptr);
        dup2(saved_, descriptor_);
        close(saved_);
        saved_ = -1;
    }
}

} // namespace doccam::test

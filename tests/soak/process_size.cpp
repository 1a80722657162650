#include "soak/process_size.h"

#include <malloc.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace doccam::test {
namespace {

namespace fs = std::filesystem;

long entries(const char* folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

long lines(const char* file) {
    std::ifstream text(file);
    long count = 0;
    for (std::string line; std::getline(text, line);) {
        ++count;
    }
    return count;
}

long residentKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") {
            long kilobytes = 0;
            status >> kilobytes;
            return kilobytes;
        }
    }
    return -1;
}

} // namespace

ProcessSize processSize() {
    // Memory that the allocator merely keeps is no growth.
    malloc_trim(0);
    return {residentKilobytes(), entries("/proc/self/fd"), entries("/proc/self/task"),
            lines("/proc/self/maps")};
}

void print(const std::string& name, const ProcessSize& size) {
    std::fprintf(stderr, "%-28s %8ld kB  %4ld descriptors  %3ld threads  %5ld mappings\n",
                 name.c_str(), size.residentKilobytes, size.descriptors, size.threads,
                 size.mappings);
}

} // namespace doccam::test

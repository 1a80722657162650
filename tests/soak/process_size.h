// What this process holds.
#pragma once

#include <string>

namespace doccam::test {

struct ProcessSize {
    long residentKilobytes;
    long descriptors;
    long threads;
    long mappings;
};

ProcessSize processSize();

// One row of a table, under a name.
void print(const std::string& name, const ProcessSize& size);

} // namespace doccam::test

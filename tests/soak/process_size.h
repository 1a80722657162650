// The resources this process holds.
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

// Prints one row of a table.
void print(const std::string& name, const ProcessSize& size);

} // namespace doccam::test

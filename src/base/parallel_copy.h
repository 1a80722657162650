// Copying large blocks of memory on several threads.
#pragma once

#include <cstddef>
#include <span>

namespace doccam {

// Copies from to target, which must be at least as large and not overlap it.
void copyInParallel(std::span<const unsigned char> from, unsigned char* target);

} // namespace doccam

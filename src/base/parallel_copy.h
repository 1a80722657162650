// Copies large pieces of memory on several threads.
#pragma once

#include <cstddef>
#include <span>

namespace doccam {

// Copies from to target, which has as many bytes at least and does not overlap it.
void copyInParallel(std::span<const unsigned char> from, unsigned char* target);

} // namespace doccam

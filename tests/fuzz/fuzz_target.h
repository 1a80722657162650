// What every fuzz target defines, and what they share.
#pragma once

#include <opencv2/core.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

// Runs the target on one input. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace doccam::test {

using Bytes = std::vector<unsigned char>;

// Reports the input as a finding unless the operation's promise holds.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// For operations that are documented to throw OpenCV's exception.
template <typename Action>
void allowImageErrors(Action&& action) {
    try {
        action();
    } catch (const cv::Exception&) {
        return;
    }
}

// A copy in which reading past the last byte is detected.
inline Bytes exactCopy(std::span<const unsigned char> bytes) {
    return {bytes.begin(), bytes.end()};
}

} // namespace doccam::test

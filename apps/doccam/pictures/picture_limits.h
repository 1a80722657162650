// Limits on a picture file's use of resources.
#pragma once

#include "pictures/headers/picture_header.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace doccam::host {

struct PictureLimits {
    std::uint64_t megapixels = 100;   // all pages of a file together
    std::chrono::seconds reading{10}; // processor time for reading the codes of a file
    std::chrono::seconds waiting{5};  // of the clock beyond that, as for a disk
    std::chrono::seconds working{18}; // processor time for other work on a file
    static constexpr std::uint64_t kReducedPixels =
        25000000; // larger pictures are reduced to this for reading codes

    // The maximum memory for a picture and its decoder.
    std::uint64_t decodingBytes() const;

    // The maximum allocation of a process that decodes and processes a picture.
    std::uint64_t workingBytes() const;
};

// The limits set by the environment: DOCCAM_MAX_MEGAPIXELS, DOCCAM_READ_SECONDS. Throws Failure for
// a value that is not an integer from 1 to 1000.
PictureLimits pictureLimits();

// Throws Failure if the picture of that name exceeds the limits.
void refuseBeyond(const PictureLimits& limits, const PictureHeader& header,
                  const std::string& name);

} // namespace doccam::host

// How much a picture file may ask of this machine.
#pragma once

#include "pictures/headers/picture_header.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace doccam::host {

struct PictureLimits {
    std::uint64_t megapixels = 100;   // of all pages of a file
    std::chrono::seconds reading{10}; // of processor time, for the codes of a file
    std::chrono::seconds waiting{5};  // of the clock beyond that, as for a disk
    std::chrono::seconds working{18}; // of processor time, for whatever else is done with a file
    static constexpr std::uint64_t kReducedPixels = 25000000; // codes are sought in no more

    // A picture and what its decoder needs beside it take no more memory than this.
    std::uint64_t decodingBytes() const;

    // What a process that decodes a picture and works on it may allocate.
    std::uint64_t workingBytes() const;
};

// As the environment sets them: DOCCAM_MAX_MEGAPIXELS, DOCCAM_READ_SECONDS. Throws Failure for a
// value that is no whole number of 1 to 1000.
PictureLimits pictureLimits();

// Throws Failure when the picture of that name is beyond them.
void refuseBeyond(const PictureLimits& limits, const PictureHeader& header,
                  const std::string& name);

} // namespace doccam::host

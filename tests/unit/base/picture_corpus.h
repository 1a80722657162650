// Small picture files of every kind that JPEG and PNG have, sound and damaged.
#pragma once

#include <string>
#include <vector>

namespace doccam::test {

struct PictureSample {
    std::string name;
    std::string bytes;
};

// Every colour space, sampling, scan order and restart interval; Exif of every orientation.
std::vector<PictureSample> jpegSamples();

// Every colour type, depth, interlacing and transparency; Exif of every orientation.
std::vector<PictureSample> pngSamples();

// Exif data with that orientation, in either byte order, after a text and a resolution.
std::string exifData(int orientation, bool littleEndian);

// The sample cut to each of several lengths, and with bytes changed in several ways.
std::vector<PictureSample> damaged(const PictureSample& sample, int ways);

// The same PNG with the right checksum for each chunk, so that damage is found later, or never.
PictureSample withRightSums(PictureSample png);

} // namespace doccam::test

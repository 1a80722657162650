// Pictures and JPEGs made in memory for the decoding tests.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace doccam::test {

using Bytes = std::vector<unsigned char>;

enum class Sampling { k444, k422, k420, kGrey };

// For the names of parameterised tests.
std::string nameOf(Sampling sampling);

// Smooth colours with a different one in each corner, red first. seed moves them.
cv::Mat samplePicture(int width, int height, int seed = 0);

// picture, red first, as a JPEG of quality 95.
Bytes jpegOf(const cv::Mat& picture, Sampling sampling = Sampling::k422);

// A sound jpeg decoded with libjpeg's own source and row loop, red first.
cv::Mat plainlyDecoded(const Bytes& jpeg);

// count pseudo-random bytes, the same in every run.
Bytes noise(std::size_t count, std::uint32_t seed = 1);

} // namespace doccam::test

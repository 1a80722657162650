// English text to print.
#pragma once

#include <opencv2/core.hpp>

#include <string>

namespace doccam::virtualcam {

// That many sentences in a random order; one of them occurs twice only in texts longer than all.
std::string prose(int sentences, cv::RNG& random);

// A heading of a few words.
std::string heading(cv::RNG& random);

} // namespace doccam::virtualcam

// The code reader's own C++ classes, as a host would use them.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>
#include <utility>
#include <vector>

namespace doccam::test {

// Name of the kind and text of each symbol in a grey picture, in the reader's order.
std::vector<std::pair<std::string, std::string>> symbolsIn(const cv::Mat& grey);

} // namespace doccam::test

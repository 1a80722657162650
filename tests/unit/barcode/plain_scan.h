// zbar's own C++ classes, used as a host would.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>
#include <utility>
#include <vector>

namespace doccam::test {

// Kind and text of each symbol in a grey picture, in zbar's order.
std::vector<std::pair<std::string, std::string>> symbolsIn(const cv::Mat& grey);

} // namespace doccam::test

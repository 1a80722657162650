// What reading a picture returns and prints.
#pragma once

#include <opencv2/core/mat.hpp>

#include <iosfwd>
#include <string>

namespace doccam::test {

struct Outcome {
    std::string text, printed;

    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out);

// read is a scan or one of the cascade's functions.
Outcome outcomeOf(std::string (*read)(cv::Mat, int), const cv::Mat& picture, int mode);

// What that many scans print when none sees a symbol.
std::string nothing(int scans);

} // namespace doccam::test

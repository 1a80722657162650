// The readers that the table compares, each with its best plain options.
#pragma once

#include <opencv2/core/mat.hpp>

#include <string>
#include <vector>

namespace doccam::test {

struct ReportedCode {
    std::string text, addon;

    bool operator==(const ReportedCode&) const = default;
};

// All symbologies, with positions and the inverted picture where there is nothing in the first.
std::vector<ReportedCode> readByZbar(const cv::Mat& grey);

// All formats, tryHarder, tryRotate and tryDownscale, with add-ons, and Codabar's start and end.
// Linear codes in a process apart, with less where it ends that process.
std::vector<ReportedCode> readByZxing(const cv::Mat& grey);

// The same in this process, linear codes without tryDownscale, for pictures in which it finds no
// linear code twice. DataBar is left out.
std::vector<ReportedCode> readByZxingHere(const cv::Mat& grey);

// All symbologies, that many seconds at most.
std::vector<ReportedCode> readByDoccam(const cv::Mat& grey, double seconds);

} // namespace doccam::test

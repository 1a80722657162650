#include "picture_report.h"

#include "own_output.h"

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdio>
#include <filesystem>

namespace demo {

bool reportFile(const std::string& path) {
    std::error_code error;
    const auto bytes = std::filesystem::file_size(path, error);
    if (error) {
        std::fprintf(stderr, "%s is missing\n", path.c_str());
        return false;
    }
    std::string size = "PDF";
    if (const cv::Mat picture = cv::imread(path, cv::IMREAD_UNCHANGED); !picture.empty()) {
        size = std::to_string(picture.cols) + " x " + std::to_string(picture.rows);
    }
    std::fprintf(out(), "%-40s %15s %12ju\n", path.c_str(), size.c_str(), bytes);
    return true;
}

double likeness(const std::string& picture, const std::string& photograph) {
    const cv::Mat taken = cv::imread(picture, cv::IMREAD_COLOR);
    cv::Mat source = cv::imread(photograph, cv::IMREAD_COLOR);
    if (taken.empty() || source.empty()) {
        return -1;
    }
    if (source.size() != taken.size()) {
        cv::resize(source, source, taken.size(), 0, 0, cv::INTER_AREA);
    }
    return cv::PSNR(taken, source);
}

} // namespace demo

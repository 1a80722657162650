// Real photographs to try a step with.
#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <vector>

namespace doccam::test {

struct Photograph {
    std::string path;
    cv::Mat picture;
};

// The pictures in the folder that DOCCAM_PHOTOS names; none when it names no folder.
std::vector<Photograph> photographs();

} // namespace doccam::test

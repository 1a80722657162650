// Photographs of sheets to try a step with: drawn ones, and real ones where there are some.
#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <vector>

namespace doccam::test {

struct Photograph {
    std::string name; // of its file
    cv::Mat picture;  // blue first
};

// A printed sheet on a black desk, a letter seen in perspective, and a tilted sheet on bright wood:
// drawn with uneven light, grain and the traces of a JPEG, always the same.
std::vector<Photograph> drawnPhotographs();

// The pictures in the folder that DOCCAM_PHOTOS names; none when it names no folder.
std::vector<Photograph> realPhotographs();

// All of them.
std::vector<Photograph> photographs();

} // namespace doccam::test

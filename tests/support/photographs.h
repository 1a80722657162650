// Photographs of sheets as test input: drawn ones, and real ones where available.
#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <vector>

namespace doccam::test {

struct Photograph {
    std::string name; // of its file
    cv::Mat picture;  // blue first
};

// A printed sheet on a black desk, a letter seen in perspective, and a tilted sheet on bright wood,
// drawn with uneven light, noise and JPEG artefacts, always the same.
std::vector<Photograph> drawnPhotographs();

// The pictures in the folder DOCCAM_PHOTOS; none if it is unset.
std::vector<Photograph> realPhotographs();

// Drawn and real.
std::vector<Photograph> photographs();

} // namespace doccam::test

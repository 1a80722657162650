// Photographs whose sheets' corners have been marked by hand.
#pragma once

#include "scene/views/camera_view.h"

#include <opencv2/core/mat.hpp>

#include <string>
#include <vector>

namespace doccam::test {

struct MarkedPhotograph {
    std::string name;
    cv::Mat picture;          // blue first
    virtualcam::Quad corners; // clockwise from the top left
};

// The photographs in the folder DOCCAM_PHOTOS that marked_photographs.json knows by name and size.
std::vector<MarkedPhotograph> markedPhotographs();

} // namespace doccam::test

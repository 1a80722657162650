// The page engine as hosts call it, with OpenCV's pictures.
#pragma once

#include "scene/views/camera_view.h"

#include <doccam/page.h>

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::test {

// The sheets in a picture, blue first, the surest first. These functions throw std::runtime_error
// where the engine returns an error.
std::vector<DoccamSheet> findSheets(const cv::Mat& picture);

virtualcam::Quad cornersOf(const DoccamSheet& sheet);

cv::Mat rectified(const cv::Mat& picture, const DoccamSheet& sheet);

// The page in paper look; black and white as 0 and 255.
cv::Mat paperLook(const cv::Mat& page, DoccamColour colour);

} // namespace doccam::test

// Filling what a page shows of the desk around it.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// Fills narrow straight bands and wedges along the borders of an evened page with white: what lies
// outside of the sheet when its corners were taken a little too far out.
void fillRim(cv::Mat& page);

} // namespace doccam::page

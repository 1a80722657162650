// Found corners compared with true ones.
#pragma once

#include "scene/views/camera_view.h"

#include <opencv2/core/types.hpp>

namespace doccam::test {

// Intersection over union of what the picture shows of two quadrilaterals: 0 to 1.
double overlap(const virtualcam::Quad& a, const virtualcam::Quad& b, cv::Size picture);

// How many quarter turns clockwise make a page upright whose corners are found: 0 to 3. found is in
// order of position, truth begins with the upright page's top left corner.
int turnsToUpright(const virtualcam::Quad& found, const virtualcam::Quad& truth);

} // namespace doccam::test

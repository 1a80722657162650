// Stacked codes read apart from others.
#pragma once

#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>

namespace doccam::codes {

// Both readers join rows of expanded DataBars wherever they are in a picture. Reads each piece of
// print at the place with nothing else in the picture; what is read so is aligned.
Sightings readPiecesApart(const cv::Mat& grey, const Corners& place);

} // namespace doccam::codes

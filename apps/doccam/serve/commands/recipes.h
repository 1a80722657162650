// The recipe of a page in a command and in a topic.
#pragma once

#include "pages/recipe.h"
#include "serve/commands/requests.h"

#include <opencv2/core/types.hpp>

namespace doccam::serve {

// recipe updated with the fields of object; corners are in fractions of the frame's size. Throws
// BadRequest.
host::Recipe changed(host::Recipe recipe, const Json& object, cv::Size frame);

Json toJson(const host::Recipe& recipe, cv::Size frame);

// Corners in fractions of the frame's width and height, rounded to one part of steps.
Json inFractions(const host::SheetCorners& corners, cv::Size frame, double steps);

} // namespace doccam::serve

// A desk whose scale is known: a sheet of known size was seen on it.
#pragma once

#include "documents/paper/page_size.h"

#include <opencv2/core/types.hpp>

#include <array>
#include <optional>
#include <vector>

namespace doccam::host {

// Of a sheet in a frame: clockwise, in pixels, whose centres are whole numbers.
using FrameCorners = std::array<cv::Point2d, 4>;

// The corners and the paper between them give the view from a camera at any angle, as the desk is
// plane.
struct Desk {
    cv::Size frame;
    FrameCorners corners{}; // of the sheet that was seen
    Millimetres paper;      // its size, from the first corner to the second and on to the third

    bool operator==(const Desk&) const = default;
};

// The size of a sheet that lies on the desk, its mean where opposite sides differ; none if no desk
// can be seen where it is.
std::optional<Millimetres> sizeOnDesk(const Desk& desk, const FrameCorners& sheet);

// The same of a sheet in a picture of that density.
Millimetres sizeAt(const FrameCorners& sheet, Density density);

// The size of all that the frame shows; none unless the camera is upright, as otherwise its scale
// differs from place to place.
std::optional<Millimetres> sizeOfView(const Desk& desk);

// The desk in a frame of that size: one that was seen in such frames, or else one seen in frames of
// the same proportions, which cameras reduce without cutting. None if there is neither.
std::optional<Desk> deskFor(const std::vector<Desk>& desks, cv::Size frame);

// Whether both are sides of the same proportions, up to a pixel.
bool sameProportions(cv::Size a, cv::Size b);

} // namespace doccam::host

// Damaged frames.
#pragma once

#include "device/faults.h"
#include "device/formats.h"
#include "device/frame_source.h"

namespace doccam::virtualcam {

// The number-th frame of the source, with the faults that damage pictures applied.
FrameBytes makeFrame(FrameSource& source, const PictureFormat& format, std::uint32_t number,
                     const std::vector<Fault>& faults);

} // namespace doccam::virtualcam

// A frame as the file that it is kept in.
#pragma once

#include <vector>

namespace doccam::host {

// The bytes of a JPEG, as the camera sent it, or of a PNG.
using FrameFile = std::vector<unsigned char>;

// ".jpg" for what begins like a JPEG, ".png" for all else.
inline const char* extensionOf(const FrameFile& frame) {
    return frame.size() > 1 && frame[0] == 0xFF && frame[1] == 0xD8 ? ".jpg" : ".png";
}

} // namespace doccam::host

// The device requests by name.
#pragma once

#include <cstdint>

namespace doccam::virtualcam {

// "DQBUF" for VIDIOC_DQBUF and so on; "UNKNOWN" for unsupported requests.
const char* requestName(std::uint32_t request);

bool isKnownRequest(std::uint32_t request);

} // namespace doccam::virtualcam

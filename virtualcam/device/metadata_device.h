// A camera's metadata node.
#pragma once

#include "device/identity.h"

#include <cstdint>

namespace doccam::virtualcam {

// Answers a request to a metadata node: returns 0 or an errno value. It reports its format and
// refuses picture formats and buffers.
int answerMetadataNode(const Identity& identity, std::uint32_t request, void* argument);

} // namespace doccam::virtualcam

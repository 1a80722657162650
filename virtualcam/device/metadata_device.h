// The second node of a camera, which carries no pictures.
#pragma once

#include "device/identity.h"

#include <cstdint>

namespace doccam::virtualcam {

// Answers a request to a metadata node; 0 or an errno value. It names its format and refuses every
// picture format and every buffer.
int answerMetadataNode(const Identity& identity, std::uint32_t request, void* argument);

} // namespace doccam::virtualcam

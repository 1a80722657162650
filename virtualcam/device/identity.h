// A node's identity.
#pragma once

#include <linux/videodev2.h>

#include <cstdint>
#include <optional>
#include <string>

namespace doccam::virtualcam {

struct Identity {
    std::string card;
    std::string busInfo;
};

// Answers the requests about a node's capabilities, inputs and priority: returns 0 or an errno
// value, none for other requests. Only capture nodes have inputs.
std::optional<int> answerIdentity(const Identity& identity, bool metadata, std::uint32_t request,
                                  void* argument);

} // namespace doccam::virtualcam

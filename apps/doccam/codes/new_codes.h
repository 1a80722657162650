// Which codes have come before the camera since the last frames.
#pragma once

#include "codes/picture_codes.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

namespace doccam::host {

// A code is new again once it has been away for three seconds and five frames, since a reader
// misses one in some frames. Codes that say the same are one.
class NewCodes {
  public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds kAway{3};
    static constexpr std::uint64_t kFramesAway = 5;

    // Those of the next frame's codes that are new.
    std::vector<Code> among(const std::vector<Code>& codes, Clock::time_point now);

  private:
    using Content = std::tuple<int, std::string, std::string>; // symbology, bytes, add-on

    struct Sighting {
        Clock::time_point time;
        std::uint64_t frame = 0;
    };

    std::uint64_t frame_ = 0;
    std::map<Content, Sighting> seen_;
};

} // namespace doccam::host

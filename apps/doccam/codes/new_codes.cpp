#include "codes/new_codes.h"

namespace doccam::host {

std::vector<Code> NewCodes::among(const std::vector<Code>& codes, Clock::time_point now) {
    ++frame_;
    std::erase_if(seen_, [&](const auto& one) {
        return now - one.second.time >= kAway && frame_ - one.second.frame > kFramesAway;
    });
    std::vector<Code> fresh;
    for (const Code& code : codes) {
        const Sighting sighting{now, frame_};
        const auto [known, isNew] =
            seen_.insert_or_assign({code.symbology, code.bytes, code.addon}, sighting);
        if (isNew) {
            fresh.push_back(code);
        }
    }
    return fresh;
}

} // namespace doccam::host

#include "pages/calibrated_size.h"

namespace doccam::host {

std::optional<Millimetres> calibratedSize(const Recipe& recipe, const std::optional<Desk>& desk) {
    if (!desk) {
        return std::nullopt;
    }
    const auto size = recipe.corners ? sizeOnDesk(*desk, *recipe.corners) : sizeOfView(*desk);
    return size ? std::optional(turned(*size, recipe.turn)) : std::nullopt;
}

} // namespace doccam::host

// The USB unit, selector and size of each picture control.
#pragma once

#include <cstdint>
#include <span>

namespace doccam::vm {

inline constexpr std::uint8_t kCameraTerminal = 1;
inline constexpr std::uint8_t kProcessingUnit = 2;
inline constexpr std::uint8_t kOutputTerminal = 3;

struct UnitControl {
    std::uint32_t id;      // V4L2 control ID
    std::uint8_t unit;     // kCameraTerminal or kProcessingUnit
    std::uint8_t selector; // in requests to the unit
    int bit;               // in the unit's control bitmap
    int bytes;             // of a value
};

std::span<const UnitControl> unitControls();

} // namespace doccam::vm

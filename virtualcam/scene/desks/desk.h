// What the sheets lie on.
#pragma once

#include <opencv2/core.hpp>

#include <optional>
#include <string>

namespace doccam::virtualcam {

enum class Desk { kDark, kWood, kGrey, kNearlyWhite, kCloth };

inline constexpr Desk kDesks[] = {Desk::kDark, Desk::kWood, Desk::kGrey, Desk::kNearlyWhite,
                                  Desk::kCloth};

// "dark", "wood", "grey", "white" and "cloth"; none for other names.
std::optional<Desk> deskNamed(const std::string& name);

// A piece of the desk from straight above in even light, 8-bit sRGB, blue first. Colours and
// pattern follow from random.
cv::Mat drawDesk(Desk desk, cv::Size pixels, double pixelsPerMillimetre, cv::RNG& random);

} // namespace doccam::virtualcam

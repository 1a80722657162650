// Time limits of the tests.
#pragma once

#include <chrono>

namespace doccam::serve {

// Longer than any test takes.
constexpr std::chrono::milliseconds kLong = std::chrono::hours{1};

constexpr std::chrono::milliseconds kNoTime{0};

} // namespace doccam::serve

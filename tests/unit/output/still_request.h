// The settings with which the tests take a still.
#pragma once

namespace doccam::test {

constexpr int kFormat = 0;
constexpr int kWholeFrame = 0;

} // namespace doccam::test

// What the tests ask for when they take a still.
#pragma once

namespace doccam::test {

constexpr int kFormat = 0;
constexpr int kWholeFrame = 0;

} // namespace doccam::test

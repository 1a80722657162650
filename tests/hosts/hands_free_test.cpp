// Which sheets the hands-free scan takes under restless light, with hands and feeders.
#include "hands_free_scenes.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using namespace doccam::test;
using testing::ElementsAre;

constexpr int kSheets = 3;
constexpr int kSecond = 30; // frames

class HandsFree : public testing::TestWithParam<HandsFreeScene> {};

TEST_P(HandsFree, TakesEverySheetOnceAndSoon) {
    Takings takings = takeSheets(GetParam().settings, {960, 720}, kSheets);
    EXPECT_THAT(takings.sheets, ElementsAre(0, 1, 2));
    std::sort(takings.frames.begin(), takings.frames.end());
    EXPECT_LE(takings.frames.at(kSheets / 2), kSecond);
}

std::string nameOf(const testing::TestParamInfo<HandsFreeScene>& scene) {
    std::string name = scene.param.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Scenes, HandsFree, testing::ValuesIn(handsFreeScenes()), nameOf);

} // namespace

#include "barcode/threshold_ladder.h"

#include <gmock/gmock.h>

namespace doccam::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ThresholdLadder, ClimbsInTwentiesFromOtsusThreshold) {
    EXPECT_THAT(thresholdLadder(120), ElementsAre(120, 140, 160, 180, 200, 220));
    EXPECT_THAT(thresholdLadder(0),
                ElementsAre(0, 20, 40, 60, 80, 100, 120, 140, 160, 180, 200, 220));
}

TEST(ThresholdLadder, EndsAtTheLastStepUpTo239) {
    EXPECT_THAT(thresholdLadder(199), ElementsAre(199, 219, 239));
    EXPECT_THAT(thresholdLadder(200), ElementsAre(200, 220));
    EXPECT_THAT(thresholdLadder(239), ElementsAre(239));
}

TEST(ThresholdLadder, IsEmptyAbove239) {
    EXPECT_THAT(thresholdLadder(240), IsEmpty());
    EXPECT_THAT(thresholdLadder(255), IsEmpty());
}

} // namespace
} // namespace doccam::test

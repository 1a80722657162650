// A hostile environment.
#include "measured_run.h"

#include <gmock/gmock.h>

namespace {

using namespace doccam::test;
using testing::HasSubstr;
using testing::MatchesRegex;

TEST(Environment, DoesNotTakeTheVirtualCamerasAwayInSilence) {
    const Cost cost =
        MeasuredRun().run({"--virtual", "list", "--json"}, "DOCCAM_UNDER_VIRTUALCAM=1");
    EXPECT_EQ(cost.status, kNoCamera);
    EXPECT_THAT(cost.err, HasSubstr("DOCCAM_UNDER_VIRTUALCAM"));
}

TEST(Environment, WithoutAPlaceForTemporaryFilesIsNamedInOneSentence) {
    const Cost cost = MeasuredRun().run({"--virtual", "list"}, "TMPDIR=/nonexistent");
    EXPECT_EQ(cost.status, kUsage);
    EXPECT_THAT(cost.err, MatchesRegex("doccam: [^\n]*TMPDIR[^\n]*[.]\n"));
}

} // namespace

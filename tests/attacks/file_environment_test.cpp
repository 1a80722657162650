// A hostile environment.
#include "measured_run.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

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

// Opening it would wait for its writer.
TEST(Environment, ThatNamesAPipeAsTheTableOfModelsKeepsNobodyWaiting) {
    const MeasuredRun program;
    const std::string pipe = program.file("models");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string command : {"list", "doctor"}) {
        EXPECT_EQ(program.run({command}, "DOCCAM_MODELS=" + pipe).status, kNoCamera) << command;
    }
}

} // namespace

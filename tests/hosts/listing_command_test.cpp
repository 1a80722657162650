#include "host_program.h"

namespace {

using namespace doccam::test;
using testing::HasSubstr;
using testing::IsEmpty;

using Listing = HostProgramTest;
using Json = nlohmann::json;

TEST_F(Listing, ShowsTheCamerasInTheOrderOfTheTable) {
    const Outcome outcome = run("--virtual list");
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_EQ(outcome.out, "0  Sheet Cam\n1  Doc Cam\n");
    EXPECT_THAT(outcome.err, IsEmpty());
}

TEST_F(Listing, ShowsTheCamerasAsJson) {
    EXPECT_EQ(
        run("list --virtual --json").json(),
        Json::parse(R"([{"index": 0, "name": "Sheet Cam"}, {"index": 1, "name": "Doc Cam"}])"));
}

TEST_F(Listing, PrintsTheLibrarysLinesOnlyWhenVerbose) {
    const Outcome outcome = run("--virtual --verbose list");
    EXPECT_EQ(outcome.out, "0  Sheet Cam\n1  Doc Cam\n");
    EXPECT_THAT(outcome.err, HasSubstr("node:/dev/video"));
}

TEST_F(Listing, ReportsThatThereIsNoCamera) {
    const Outcome outcome = runWith("", "list --json");
    EXPECT_EQ(outcome.status, kNoCamera);
    EXPECT_EQ(outcome.json(), Json::array());
    EXPECT_THAT(outcome.err, isOneSentence());
}

TEST_F(Listing, NamesACameraThatCannotBeOpened) {
    const Outcome outcome = runWith(
        camera(
            R"("faults": [{"fault": "call", "request": "open", "errno": "EACCES", "onwards": true}])"),
        "list");
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_THAT(outcome.out, HasSubstr("doccam doctor"));
}

TEST_F(Listing, ShowsTheSizesOfBothFormats) {
    const Outcome outcome = runWith(camera(), "sizes");
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_THAT(outcome.out, HasSubstr("mjpeg: 1280x960"));
    EXPECT_THAT(outcome.out, HasSubstr("yuyv:  640x480"));
}

TEST_F(Listing, ShowsTheSizesAsJson) {
    const Json sizes = run("--virtual sizes --json --camera 1").json();
    EXPECT_EQ(sizes["camera"], 1);
    EXPECT_EQ(sizes["mjpeg"][0], Json::parse(R"({"width": 640, "height": 480})"));
    EXPECT_FALSE(sizes["yuyv"].empty());
}

TEST_F(Listing, NeedsTheRequestedCamera) {
    const Outcome outcome = run("--virtual sizes --camera 2");
    EXPECT_EQ(outcome.status, kNoCamera);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_THAT(outcome.err, HasSubstr("camera 2"));
}

TEST_F(Listing, ReportsThatACameraListsNoSizes) {
    const Outcome outcome = runWith(
        camera(
            R"("faults": [{"fault": "call", "request": "open", "errno": "EACCES", "onwards": true}])"),
        "sizes");
    EXPECT_EQ(outcome.status, kCameraFailed);
    EXPECT_THAT(outcome.err, isOneSentence());
}

} // namespace

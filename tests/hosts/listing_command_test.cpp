#include "host_program.h"

#include <filesystem>
#include <map>

namespace {

using namespace doccam::test;
using testing::HasSubstr;
using testing::IsEmpty;

using Listing = HostProgramTest;
using Json = nlohmann::json;

TEST_F(Listing, ShowsTheCamerasInTheOrderOfTheTable) {
    const Outcome outcome = run("--virtual list");
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_EQ(outcome.out, "0  Sheet Cam  /dev/video2  1778:0210\n"
                           "1  Doc Cam  /dev/video0  0c45:6366\n");
    EXPECT_THAT(outcome.err, IsEmpty());
}

TEST_F(Listing, ShowsTheCamerasAsJson) {
    EXPECT_EQ(run("list --virtual --json").json(),
              Json::parse(
                  R"([{"index": 0, "name": "Sheet Cam", "path": "/dev/video2", "usb": "1778:0210"},
                {"index": 1, "name": "Doc Cam", "path": "/dev/video0", "usb": "0c45:6366"}])"));
}

TEST_F(Listing, PrintsTheLibrarysLinesOnlyWhenVerbose) {
    const Outcome outcome = run("--virtual --verbose list");
    EXPECT_THAT(outcome.out, HasSubstr("0  Sheet Cam"));
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

TEST_F(Listing, TakesACameraByNameUsbIdNodeOrLink) {
    std::filesystem::create_symlink("/dev/video0", file("by-id"));
    for (const std::string& camera : std::vector<std::string>{
             "1", "'Doc Cam'", "DOC", "0c45:6366", "0C45:6366", "/dev/video0", file("by-id")}) {
        const Outcome outcome = run("--virtual sizes --json --camera " + camera);
        ASSERT_EQ(outcome.status, kDone) << camera << outcome.err;
        EXPECT_EQ(outcome.json()["camera"], 1) << camera;
    }
}

TEST_F(Listing, TakesTheCameraOfThatNameBeforeThoseThatContainIt) {
    const std::string cameras = camera(R"("card": "Doc Cam Pro")") + ", " +
                                camera(R"("card": "doc cam", "vendor": "1778", "product": "0210")");
    EXPECT_EQ(runWith(cameras, "sizes --json --camera 'Doc Cam'").json()["camera"], 0);
    EXPECT_EQ(runWith(cameras, "sizes --json --camera pro").json()["camera"], 1);
}

TEST_F(Listing, NamesTheCamerasWhenNoneOrSeveralAreMeant) {
    for (const auto& [camera, status] : std::map<std::string, int>{{"cam", kUsage},
                                                                   {"laser", kNoCamera},
                                                                   {"5", kNoCamera},
                                                                   {"1778:6366", kNoCamera},
                                                                   {"/dev/video1", kNoCamera},
                                                                   {"/dev/null", kNoCamera}}) {
        const Outcome outcome = run("--virtual sizes --camera " + camera);
        EXPECT_EQ(outcome.status, status) << camera;
        EXPECT_THAT(outcome.err, isOneSentence());
        EXPECT_THAT(outcome.err, HasSubstr("0 Sheet Cam (/dev/video2, 1778:0210), 1 Doc Cam "
                                           "(/dev/video0, 0c45:6366)"));
    }
}

TEST_F(Listing, HasTheOrderOfTheDoctor) {
    const Json listed = run("--virtual list --json").json();
    const Json advice = run("--virtual doctor --json").json()["advice"];
    ASSERT_EQ(advice.size(), listed.size());
    for (std::size_t i = 0; i < listed.size(); ++i) {
        for (const char* key : {"index", "path", "usb"}) {
            EXPECT_EQ(advice[i][key], listed[i][key]) << key;
        }
    }
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

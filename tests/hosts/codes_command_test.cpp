#include "host_program.h"

#include <fstream>

namespace {

using namespace doccam::test;
using testing::HasSubstr;
using testing::IsEmpty;

using Codes = HostProgramTest;
using Json = nlohmann::json;

TEST_F(Codes, AreReadFromAFile) {
    const Outcome outcome = run("read " + drawSheet("sheet.png"));
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_EQ(outcome.out, "qr: https://example.org/sheet/0042\nbar: DOC-0042-2026\n");
    EXPECT_THAT(outcome.err, IsEmpty());
}

TEST_F(Codes, OfOneKindAreReadFromSeveralFiles) {
    const Outcome outcome =
        run("read --kind bar " + drawSheet("a.png") + " " + drawSheet("b.png", 7));
    EXPECT_EQ(outcome.out, "a.png: bar: DOC-0042-2026\nb.png: bar: DOC-0049-2026\n");
}

TEST_F(Codes, AreReadFromTheCameraAsJson) {
    const Outcome outcome = runWith(camera(), "read --kind qr --json");
    EXPECT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(outcome.json(), Json::parse(R"([{"source": "camera 0", "kind": "qr",
                               "text": "https://example.org/sheet/0042"}])"));
}

TEST_F(Codes, AreReportedMissing) {
    const Outcome live =
        runWith(camera(R"("scene": {"centreX": 9, "noise": 0})"), "read --wait 0 --json");
    EXPECT_EQ(live.status, kNothingFound);
    EXPECT_EQ(live.json(), Json::array());
    EXPECT_THAT(live.err, isOneSentence());
}

TEST_F(Codes, AreNotReadFromAnUnpluggedCamera) {
    const Outcome outcome = runWith(
        camera(R"("scene": {"centreX": 9, "noise": 0}, "faults": [{"fault": "unplug", "at": 4}])"),
        "read --wait 3600 --json");
    EXPECT_EQ(outcome.status, kCameraFailed);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_EQ(outcome.json(), Json::array());
}

TEST_F(Codes, OfTheFilesBeforeAnUnreadableOneArePrinted) {
    const Outcome outcome = run("read --kind qr --json " + drawSheet("sheet.png") + " missing.png");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_EQ(outcome.json().size(), 1U);
}

TEST_F(Codes, AreNotSoughtInAFileThatIsNoPicture) {
    std::ofstream(file("text.png")) << "no picture";
    for (const std::string name : {"text.png", "missing.png"}) {
        const Outcome outcome = run("read " + name);
        EXPECT_EQ(outcome.status, kUsage);
        EXPECT_THAT(outcome.err, isOneSentence());
        EXPECT_THAT(outcome.err, HasSubstr(name));
    }
}

} // namespace

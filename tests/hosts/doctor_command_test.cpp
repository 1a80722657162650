#include "host_program.h"

#include <cstdlib>
#include <fstream>

namespace {

using namespace doccam::test;
using testing::HasSubstr;

class Doctor : public HostProgramTest {
  protected:
    // What the doctor says of a camera with these faults, and with what status.
    Outcome examine(const std::string& faults) const {
        return runWith(camera("\"faults\": [" + faults + "]"), "doctor");
    }

    void expectTrouble(const std::string& faults, const std::string& words) const {
        const Outcome outcome = examine(faults);
        EXPECT_EQ(outcome.status, kCameraFailed) << words;
        EXPECT_THAT(outcome.out, HasSubstr(words));
    }
};

std::string refusal(const std::string& request, const std::string& error) {
    return R"({"fault": "call", "request": ")" + request + R"(", "errno": ")" + error +
           R"(", "onwards": true})";
}

const std::string kForeign = camera(R"("vendor": "abcd", "product": "0001", "card": "Odd Cam")");

TEST_F(Doctor, FindsAGoodCameraWell) {
    const Outcome outcome = examine("");
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_THAT(outcome.out,
                HasSubstr("ok: /dev/video0 (Doc Cam: Doc Cam): works: 6 sound frames of "
                          "mjpeg 1280x960"));
}

TEST_F(Doctor, WorksWhereNothingIsAttached) {
    const Outcome outcome = runWith("", "doctor --json");
    EXPECT_EQ(outcome.status, kNoCamera);
    EXPECT_EQ(outcome.json()["advice"][0]["level"], "trouble");
    EXPECT_EQ(outcome.json()["advice"][0]["what"], "there is no video node");
}

TEST_F(Doctor, RecognisesTheUsualTrouble) {
    expectTrouble(refusal("open", "EACCES"), "may ");
    expectTrouble(refusal("VIDIOC_S_FMT", "EBUSY"), "is in use");
    expectTrouble(refusal("VIDIOC_STREAMON", "ENOSPC"), "USB bandwidth");
    expectTrouble(refusal("VIDIOC_REQBUFS", "EIO"), "fails at VIDIOC_REQBUFS");
    expectTrouble(R"({"fault": "truncated", "onwards": true})", "6 of 6 frames");
    expectTrouble(R"({"fault": "empty", "onwards": true})", "cut short");
    expectTrouble(R"({"fault": "corrupt", "onwards": true})", "no JPEG");
    expectTrouble(R"({"fault": "unplug", "at": 4})", "VIDIOC_DQBUF");
}

TEST_F(Doctor, ShowsTheRowOfAForeignCamera) {
    const Outcome outcome = runWith(kForeign, "doctor");
    EXPECT_EQ(outcome.status, kNoCamera);
    EXPECT_THAT(outcome.out, HasSubstr("\"abcd:0001  # Odd Cam\""));
}

TEST_F(Doctor, AddsAForeignCameraToTheModelsThatTheLibraryReads) {
    std::ofstream(file("models.txt")) << "0c45:6366\n";
    setenv("DOCCAM_MODELS", file("models.txt").c_str(), 1);
    EXPECT_EQ(runWith(kForeign, "list").status, kNoCamera);
    const Outcome added = runWith(kForeign, "doctor --add --json");
    EXPECT_EQ(added.status, kDone) << added.err;
    EXPECT_EQ(added.json()["added"][0], "abcd:0001  # Odd Cam");
    EXPECT_EQ(runWith(kForeign, "list").out, "0  Odd Cam\n");
    unsetenv("DOCCAM_MODELS");
}

TEST_F(Doctor, AddsNothingWhereAllIsSupported) {
    std::ofstream(file("models.txt")) << "0c45:6366\n";
    setenv("DOCCAM_MODELS", file("models.txt").c_str(), 1);
    EXPECT_EQ(runWith(camera(), "doctor --add").status, kDone);
    std::ifstream table(file("models.txt"));
    std::string text;
    std::getline(table, text, '\0');
    EXPECT_EQ(text, "0c45:6366\n");
    unsetenv("DOCCAM_MODELS");
}

} // namespace

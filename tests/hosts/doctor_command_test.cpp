#include "host_program.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::HasSubstr;

class Doctor : public HostProgramTest {
  protected:
    // The doctor's output and status for a camera with these faults.
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

TEST_F(Doctor, FindsAGoodCameraHealthy) {
    const Outcome outcome = examine("");
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_THAT(outcome.out,
                HasSubstr("ok: /dev/video0 (Doc Cam: Doc Cam), 0c45:6366, camera 0: works: "
                          "6 sound frames of mjpeg 1280x960"));
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

TEST_F(Doctor, IgnoresTheTroubleOfAForeignCamera) {
    const std::string refused =
        R"("vendor": "abcd", "product": "0001", "faults": [)" + refusal("open", "EACCES") + "]";
    const Outcome outcome = runWith(camera() + ", " + camera(refused), "doctor");
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_THAT(outcome.out, HasSubstr("note: /dev/video2"));
}

// A model file for models to be added to.
class ModelFile : public HostProgramTest {
  protected:
    ModelFile() { setenv("DOCCAM_MODELS", file("models.txt").c_str(), 1); }

    ~ModelFile() override { unsetenv("DOCCAM_MODELS"); }

    void write(const std::string& rows) const { std::ofstream(file("models.txt")) << rows; }

    std::string content() const {
        std::ifstream table(file("models.txt"));
        return {std::istreambuf_iterator<char>(table), {}};
    }
};

const std::string kTwoForeign =
    kForeign + ", " + camera(R"("vendor": "abcd", "product": "0002", "card": "Web Cam")");

TEST_F(ModelFile, GetsTheOneForeignCameraAndTheLibraryReadsIt) {
    write("0c45:6366\n");
    EXPECT_EQ(runWith(kForeign, "list").status, kNoCamera);
    const Outcome added = runWith(kForeign, "doctor --add --json");
    EXPECT_EQ(added.status, kDone) << added.err;
    EXPECT_EQ(added.json()["added"][0], "abcd:0001  # Odd Cam");
    EXPECT_TRUE(added.json()["givenUp"].empty());
    EXPECT_EQ(runWith(kForeign, "list").out, "0  Odd Cam  /dev/video0  abcd:0001\n");
}

TEST_F(ModelFile, GetsNoneOfSeveralForeignCamerasUnnamed) {
    write("0c45:6366\n");
    const Outcome outcome = runWith(kTwoForeign, "doctor --add --json");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_THAT(outcome.err, AllOf(isOneSentence(), HasSubstr("--add abcd:0001 (Odd Cam)"),
                                   HasSubstr("--add abcd:0002 (Web Cam)")));
    EXPECT_EQ(outcome.json()["advice"].size(), 2U);
    EXPECT_EQ(content(), "0c45:6366\n");
}

TEST_F(ModelFile, GetsTheForeignCameraThatIsNamed) {
    write("0c45:6366\n");
    EXPECT_EQ(runWith(kTwoForeign, "doctor --add abcd:0002").status, kDone);
    EXPECT_EQ(content(), "0c45:6366\nabcd:0002  # Web Cam\n");
}

TEST_F(ModelFile, GetsNoCameraThatIsNotAttached) {
    EXPECT_EQ(runWith(kForeign, "doctor --add 1234:5678").status, kNoCamera);
    EXPECT_EQ(runWith(kForeign, "doctor --add ABCD:0001").status, kUsage);
    EXPECT_THAT(files(), testing::IsEmpty());
}

TEST_F(ModelFile, DropsTheLastBuiltInRowAndReportsIt) {
    const Outcome outcome = runWith(kForeign, "doctor --add");
    EXPECT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("given up for it, as nine rows are the most: 1d6b:0105\n"));
}

TEST_F(ModelFile, StaysAsItIsWhereAllIsSupported) {
    write("0c45:6366\n");
    EXPECT_EQ(runWith(camera(), "doctor --add").status, kDone);
    EXPECT_EQ(runWith(camera(), "doctor --add 0c45:6366").status, kDone);
    EXPECT_EQ(content(), "0c45:6366\n");
}

} // namespace

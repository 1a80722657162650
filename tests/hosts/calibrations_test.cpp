// The file in which calibrations are kept.
#include "camera/calibrations.h"
#include "host/failure.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace {

using namespace doccam::host;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

Calibration calibration(const std::string& camera, cv::Size frame, double width = 210) {
    return {camera,
            {frame, {{{100.25, 50.5}, {900, 51}, {905, 700}, {95, 702.125}}}, {width, 297}},
            1234567};
}

class Calibrations : public testing::Test {
  protected:
    std::string path() const { return folder_.file("config/doccam/calibration.json"); }

    doccam::test::ScratchFolder folder_;
    CalibrationFile file_{folder_.file("config/doccam")};
    Calibration first_ = calibration("0c45:6366", {1280, 960});
    Calibration second_ = calibration("1778:0210:SERIAL", {1280, 960});
};

TEST_F(Calibrations, AreKeptInAFileForTheUserAlone) {
    EXPECT_THAT(file_.read(), IsEmpty());
    file_.keep(first_);
    file_.keep(second_);
    EXPECT_THAT(file_.read(), ElementsAre(first_, second_));
    EXPECT_EQ(fs::status(path()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Calibrations, ReplaceThoseOfTheSameCameraAndFrameSize) {
    file_.keep(first_);
    const Calibration other = calibration("0c45:6366", {640, 480});
    file_.keep(other);
    const Calibration anew = calibration("0c45:6366", {1280, 960}, 148);
    file_.keep(anew);
    EXPECT_THAT(file_.read(), ElementsAre(other, anew));
}

TEST_F(Calibrations, AreForgottenByCameraAndFrameSize) {
    const Calibration small = calibration("0c45:6366", {640, 480});
    for (const Calibration& one : {first_, small, second_}) {
        file_.keep(one);
    }
    EXPECT_THAT(file_.forget("0c45:6366", cv::Size(640, 480)), ElementsAre(small));
    EXPECT_THAT(file_.forget("0000:0000", std::nullopt), IsEmpty());
    EXPECT_THAT(file_.read(), ElementsAre(first_, second_));
    EXPECT_THAT(file_.forget("", std::nullopt), ElementsAre(first_, second_));
    EXPECT_THAT(file_.read(), IsEmpty());
}

TEST_F(Calibrations, ThatAreDamagedAreRefusedAndReplacedByTheNext) {
    file_.keep(first_);
    for (const char* text : {"", "{", "[]", R"({"version": 2, "calibrations": []})",
                             R"({"version": 1, "calibrations": [{"camera": "a"}]})"}) {
        std::ofstream(path()) << text;
        EXPECT_THROW(file_.read(), Failure) << text;
    }
    file_.keep(second_);
    EXPECT_THAT(file_.read(), ElementsAre(second_));
}

TEST_F(Calibrations, AreRefusedWithNumbersOutOfRange) {
    const std::string sound = calibrationText({first_});
    EXPECT_TRUE(parseCalibrations(sound));
    for (const auto& [from, to] : {std::pair("1280", "0"), std::pair("1280", "1e9"),
                                   std::pair("210.0", "1e9"), std::pair("100.25", "1e300"),
                                   std::pair("100.25", "null"), std::pair("1234567", "\"now\"")}) {
        std::string text = sound;
        text.replace(text.find(from), std::string(from).size(), to);
        EXPECT_FALSE(parseCalibrations(text)) << to;
    }
}

TEST_F(Calibrations, FollowTheLinkThatTheFolderIs) {
    fs::create_directories(folder_.file("elsewhere"));
    fs::create_directories(folder_.file("config"));
    fs::create_directory_symlink(folder_.file("elsewhere"), folder_.file("config/doccam"));
    const CalibrationFile file(folder_.file("config/doccam"));
    file.keep(first_);
    EXPECT_THAT(file.read(), ElementsAre(first_));
    EXPECT_TRUE(fs::exists(folder_.file("elsewhere/calibration.json")));
}

} // namespace

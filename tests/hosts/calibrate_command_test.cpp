// The true size of pages: doccam calibrate, and pages that carry their size.
#include "host_program.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <fstream>
#include <string>

namespace {

using namespace doccam::test;
using testing::HasSubstr;

// A fast camera of the document camera's sizes, 15 degrees from upright unless it is plain.
std::string cameraWith(const std::string& scene, bool tilted) {
    return R"({"intervalMs": 0, "scene": {"sheetHeight": 0.6, )" + scene +
           (tilted ? R"(, "desk": "wood", "view": {"tilt": 15, "tiltDirection": 60})" : "") + "}}";
}

const std::string kInTheMiddle = R"("angle": 3)";
const std::string kElsewhere = R"("angle": 38, "centreX": 0.6, "centreY": 0.55)";
const std::string kEmpty = R"("centreX": 9)";

class Calibrate : public HostProgramTest {
  protected:
    void calibrate(const std::string& options, bool tilted = false) const {
        const Outcome outcome =
            runWith(cameraWith(kInTheMiddle, tilted), "calibrate a4 --json " + options);
        ASSERT_EQ(outcome.status, kDone) << outcome.err;
        EXPECT_EQ(outcome.json()["paper"], "a4");
    }

    nlohmann::json captured(const std::string& arguments, const std::string& scene = kElsewhere,
                            bool tilted = false) const {
        const Outcome outcome =
            runWith(cameraWith(scene, tilted), "capture --force --json " + arguments);
        EXPECT_EQ(outcome.status, kDone) << outcome.err;
        return outcome.status == kDone ? outcome.json()[0] : nlohmann::json();
    }

    static void expectA4(const nlohmann::json& row, double tolerance) {
        ASSERT_TRUE(row.contains("mm")) << row;
        EXPECT_EQ(row["dpi_from"], "calibration");
        const double one = row["mm"][0];
        const double other = row["mm"][1];
        EXPECT_NEAR(std::min(one, other) / 210, 1, tolerance);
        EXPECT_NEAR(std::max(one, other) / 297, 1, tolerance);
        const double pixels = row["width"].get<double>() + row["height"].get<double>();
        EXPECT_NEAR(row["dpi"], pixels * 25.4 / (one + other), 0.01 * row["dpi"].get<double>());
    }
};

TEST_F(Calibrate, GivesSheetsElsewhereOnTheDeskTheirSizeAtEachFrameSize) {
    for (const std::string size : {"640x480", "1280x960", "2048x1536"}) {
        SCOPED_TRACE(size);
        calibrate("--size " + size);
        expectA4(captured("--crop=sheet --size " + size + " a.png"), 0.005);
    }
}

TEST_F(Calibrate, KnowsTheDeskOfATiltedCamera) {
    for (const std::string size : {"640x480", "1280x960", "1600x1200"}) {
        SCOPED_TRACE(size);
        calibrate("--size " + size, true);
        expectA4(captured("--crop=sheet --size " + size + " a.png", kElsewhere, true), 0.005);
    }
}

TEST_F(Calibrate, ServesOtherFrameSizesOfTheSameProportions) {
    calibrate("--size 1600x1200", true);
    expectA4(captured("--crop=sheet --size 1280x960 a.png", kElsewhere, true), 0.005);
}

TEST_F(Calibrate, TurnsTheSizeWithThePage) {
    calibrate("--size 640x480");
    const auto upright = captured("--crop=sheet --size 640x480 a.png", kInTheMiddle);
    const auto turned = captured("--crop=sheet --size 640x480 --rotate 90 a.png", kInTheMiddle);
    EXPECT_NEAR(upright["mm"][0], 210, 2);
    EXPECT_NEAR(turned["mm"][0], 297, 2);
}

TEST_F(Calibrate, GivesAWholeFrameTheSizeOfTheDeskInView) {
    calibrate("--size 640x480");
    const auto row = captured("--look photo --size 640x480 a.png");
    EXPECT_EQ(row["dpi_from"], "calibration");
    EXPECT_NEAR(row["mm"][1], 297 / 0.6, 3);
}

TEST_F(Calibrate, IsListedAndForgotten) {
    calibrate("--size 640x480");
    calibrate("--size 1280x960");
    const auto rows = run("calibrate --list --json").json();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0]["camera"], "0c45:6366");
    EXPECT_EQ(rows[1]["width"], 1280);
    EXPECT_NEAR(rows[1]["dpi"], 0.6 * 960 * 25.4 / 297, 0.5);
    EXPECT_EQ(run("calibrate --forget 0c45:6366 --size 640x480").status, kDone);
    EXPECT_EQ(run("calibrate --list --json").json().size(), 1U);
    EXPECT_EQ(run("calibrate --forget all").status, kDone);
    EXPECT_EQ(run("calibrate --list --json").json().size(), 0U);
    EXPECT_EQ(run("calibrate --forget all").status, kNothingFound);
}

TEST_F(Calibrate, SaysWhyItCannotMeasure) {
    const auto fails = [&](const std::string& scene, const std::string& arguments) {
        const Outcome outcome = runWith(cameraWith(scene, false), arguments + " --size 640x480");
        EXPECT_EQ(outcome.status, kNothingFound) << outcome.err;
        EXPECT_THAT(outcome.err, isOneSentence());
        return outcome.err;
    };
    EXPECT_THAT(fails(kEmpty, "calibrate a4"), HasSubstr("No sheet was found"));
    EXPECT_THAT(fails(kInTheMiddle, "calibrate letter"), HasSubstr("letter 1 to 1.29"));
    EXPECT_THAT(fails(R"("angle": 0, "centreY": 0.78)", "calibrate a4"), HasSubstr("cut off"));
    EXPECT_EQ(run("calibrate").status, kUsage);
    EXPECT_EQ(run("calibrate a9").status, kUsage);
    EXPECT_EQ(run("calibrate a4 --list").status, kUsage);
}

TEST_F(Calibrate, ThatIsDamagedCostsASentenceAndNoPage) {
    calibrate("--size 640x480");
    std::ofstream(config() + "/doccam/calibration.json") << "{";
    const Outcome outcome = runWith(cameraWith(kInTheMiddle, false),
                                    "capture --crop=sheet --size 640x480 a.png --json");
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_EQ(outcome.json()[0]["dpi_from"], "guess");
}

class TrueSize : public Calibrate {
  protected:
    std::string content(const std::string& name) const {
        std::ifstream stream(file(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    bool carries(const std::string& name) const {
        const std::string bytes = content(name);
        return name.ends_with(".png") ? bytes.find("pHYs") != std::string::npos : bytes[13] == 1;
    }
};

TEST_F(TrueSize, IsWrittenIntoPagesUnlessItIsAGuess) {
    const std::string page = "--crop=sheet --size 640x480 ";
    EXPECT_EQ(captured(page + "a.jpg")["dpi_from"], "guess");
    EXPECT_FALSE(carries("a.jpg"));
    captured(page + "a.png");
    EXPECT_FALSE(carries("a.png"));
    EXPECT_EQ(captured(page + "--paper a5 a.jpg")["dpi_from"], "paper");
    EXPECT_TRUE(carries("a.jpg"));
    const auto row = captured(page + "--dpi 150 a.png");
    EXPECT_EQ(row["dpi"], 150);
    EXPECT_EQ(row["dpi_from"], "option");
    EXPECT_TRUE(carries("a.png"));
}

TEST_F(TrueSize, OfACapturedPageIsFoundInItsFile) {
    calibrate("--size 640x480");
    for (const std::string name : {"a.jpg", "a.png", "a.tif"}) {
        const double written = captured("--crop=sheet --size 640x480 " + name)["dpi"];
        const Outcome outcome = run("clean --look photo --force --json " + name);
        ASSERT_EQ(outcome.status, kDone) << outcome.err;
        EXPECT_EQ(outcome.json()[0]["dpi_from"], "file") << name;
        EXPECT_NEAR(outcome.json()[0]["dpi"], written, 0.005 * written) << name;
    }
}

TEST_F(TrueSize, IsOfPagesOnly) {
    drawSheet("a.png");
    const Outcome still = runWith(camera(), "capture --paper a4 b.jpg");
    EXPECT_EQ(still.status, kUsage);
    EXPECT_THAT(still.err, isOneSentence());
    EXPECT_EQ(run("clean --dpi 300 a.png").status, kUsage);
    EXPECT_EQ(run("clean --crop --dpi 19 a.png").status, kUsage);
    EXPECT_EQ(run("clean --crop --paper a9 a.png").status, kUsage);
}

TEST_F(TrueSize, OfCleanedPagesIsToldAndWritten) {
    drawSheet("a.jpg");
    const auto row = run("clean --crop --paper A4 --json a.jpg").json()[0];
    EXPECT_EQ(row["dpi_from"], "paper");
    EXPECT_EQ(row["mm"], (nlohmann::json{210.0, 297.0}));
    EXPECT_TRUE(carries("a-clean.jpg"));
    EXPECT_EQ(run("clean --crop --json --force a.jpg").json()[0]["dpi_from"], "guess");
    EXPECT_FALSE(carries("a-clean.jpg"));
}

TEST_F(TrueSize, IsKeptWithScannedPages) {
    calibrate("--size 640x480");
    const std::string scan = "scan --size 640x480 --json ";
    const Outcome outcome = runWith(cameraWith(kElsewhere, false), scan + "--pages 1 a.pdf", "\n");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    expectA4(outcome.json()["pages"][0], 0.005);
    const Outcome named =
        runWith(cameraWith(kElsewhere, false), scan + "--paper a5 --pages 1 b.pdf", "\n");
    ASSERT_EQ(named.status, kDone) << named.err;
    EXPECT_EQ(named.json()["pages"][0]["dpi_from"], "paper");
}

} // namespace

// Pages of the sheets in picture files.
#include "host_program.h"
#include "scene/scene.h"
#include "support/page_likeness.h"
#include "support/refused_writing.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using namespace doccam::test;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr double kA4 = 210.0 / 297;

class Sheets : public HostProgramTest {
  protected:
    Sheets() {
        scene_.desk = "wood";
        scene_.angle = 9;
        scene_.sheetHeight = 0.72;
        scene_.view.tilt = 15;
        scene_.view.tiltDirection = 60;
        scene_.light.gradient = 2;
        scene_.noise = 0;
    }

    cv::Mat photograph() const { return doccam::virtualcam::drawScene(scene_, kPicture); }

    void photograph(const std::string& name) const { cv::imwrite(file(name), photograph()); }

    void photographDesk(const std::string& name) const {
        doccam::virtualcam::SceneSettings scene = scene_;
        scene.centreX = 9;
        cv::imwrite(file(name), doccam::virtualcam::drawScene(scene, kPicture));
    }

    // Two sheets of different size, seen from straight above.
    void photographTwo(const std::string& name) const {
        cv::Mat picture(kPicture, CV_8UC3, cv::Scalar(50, 60, 72));
        const auto lay = [&](const cv::RotatedRect& sheet) {
            cv::Point2f corners[4];
            sheet.points(corners);
            const std::vector<cv::Point> whole(std::begin(corners), std::end(corners));
            cv::fillConvexPoly(picture, whole, cv::Scalar(236, 240, 238), cv::LINE_AA);
        };
        lay({{350, 460}, {460, 640}, 3});
        lay({{930, 440}, {360, 220}, -4});
        cv::GaussianBlur(picture, picture, {}, 0.8);
        cv::imwrite(file(name), picture);
    }

    std::string bytesOf(const std::string& name) const {
        std::ifstream stream(file(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    // The largest distance of a corner that is printed from the true one, in pixels.
    double errorOf(const nlohmann::json& corners) const {
        double error = 0;
        for (const cv::Point2f& truth : doccam::virtualcam::sheetCorners(scene_, kPicture)) {
            double nearest = 1e9;
            for (const auto& corner : corners) {
                nearest = std::min(nearest, std::hypot(corner[0].get<double>() - truth.x,
                                                       corner[1].get<double>() - truth.y));
            }
            error = std::max(error, nearest);
        }
        return error;
    }

    const cv::Size kPicture{1280, 960};
    doccam::virtualcam::SceneSettings scene_;
};

TEST_F(Sheets, BecomePagesBesideTheirPictures) {
    photograph("a.jpg");
    const Outcome outcome = run("clean --crop --json a.jpg");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(files(), ElementsAre("a-clean.jpg", "a.jpg"));
    const auto row = outcome.json()[0];
    EXPECT_EQ(row["source"], "a.jpg");
    EXPECT_EQ(row["file"], "a-clean.jpg");
    EXPECT_EQ(row["bytes"], bytesOf("a-clean.jpg").size());
    EXPECT_LT(errorOf(row["sheet"]), 1.5);
    EXPECT_GT(row["confidence"], 0.5);
    EXPECT_LE(row["confidence"], 1);
    const cv::Mat page = cv::imread(file("a-clean.jpg"));
    EXPECT_EQ(page.size(), cv::Size(row["width"], row["height"]));
    EXPECT_NEAR(static_cast<double>(page.cols) / page.rows, kA4, 0.01 * kA4);
    EXPECT_GT(likeness(turnedBack(page, 0), doccam::virtualcam::flatSheet(scene_), 0), 0.8);
    EXPECT_LT(page.at<cv::Vec3b>(20, 20)[2] - page.at<cv::Vec3b>(20, 20)[0], 4);
    EXPECT_GT(page.at<cv::Vec3b>(20, 20)[0], 250);
}

TEST_F(Sheets, AreFoundAlikeInFilesOfEveryType) {
    photograph("a.png");
    photograph("b.tif");
    photograph("c.jpg");
    const Outcome outcome = run("clean --crop --look photo --json a.png b.tif c.jpg");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    const auto rows = outcome.json();
    EXPECT_EQ(rows[0]["sheet"], rows[1]["sheet"]);
    EXPECT_EQ(bytesOf("a-clean.png").substr(1, 3), "PNG");
    for (const auto& row : rows) {
        EXPECT_LT(errorOf(row["sheet"]), 1.5);
    }
}

TEST_F(Sheets, KeepTheirLightInALookOfAPhoto) {
    photograph("a.png");
    ASSERT_EQ(run("clean --crop --look photo a.png").status, kDone);
    const double photo = cv::mean(cv::imread(file("a-clean.png")))[0];
    ASSERT_EQ(run("clean --crop --look paper --force a.png").status, kDone);
    EXPECT_GT(cv::mean(cv::imread(file("a-clean.png")))[0], photo + 30);
}

TEST_F(Sheets, InBlackAndWhiteArePngFilesOfOneBitPerPixel) {
    photograph("a.jpg");
    const Outcome outcome = run("clean --crop --colour bw --json a.jpg");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(outcome.json()[0]["file"], "a-clean.png");
    EXPECT_THAT(files(), ElementsAre("a-clean.png", "a.jpg"));
    const std::string header = bytesOf("a-clean.png").substr(24, 2);
    EXPECT_EQ(header, std::string("\1\0", 2)); // bits, grey
    const cv::Mat page = cv::imread(file("a-clean.png"), cv::IMREAD_UNCHANGED);
    EXPECT_EQ(page.channels(), 1);
    EXPECT_EQ(page.at<uchar>(20, 20), 255);
    EXPECT_GT(likeness(page, doccam::virtualcam::flatSheet(scene_), 0), 0.6);
}

TEST_F(Sheets, AreGreyInBothSpellings) {
    photograph("a.jpg");
    ASSERT_EQ(run("clean --crop --colour grey a.jpg").status, kDone);
    const std::string grey = bytesOf("a-clean.jpg");
    ASSERT_EQ(run("clean --crop --color gray --force a.jpg").status, kDone);
    EXPECT_EQ(bytesOf("a-clean.jpg"), grey);
    EXPECT_EQ(cv::imread(file("a-clean.jpg"), cv::IMREAD_UNCHANGED).channels(), 1);
}

TEST_F(Sheets, ThatAreNotThereLeaveNoFile) {
    photographDesk("a.jpg");
    const Outcome plain = run("clean --crop a.jpg");
    EXPECT_EQ(plain.status, kNothingFound);
    EXPECT_EQ(plain.out, "");
    EXPECT_THAT(plain.err, isOneSentence());
    EXPECT_THAT(plain.err, HasSubstr("a.jpg"));
    const Outcome outcome = run("clean --crop --json a.jpg");
    EXPECT_EQ(outcome.status, kNothingFound);
    EXPECT_TRUE(outcome.json()[0]["sheet"].is_null());
    EXPECT_EQ(outcome.json().size(), 1U);
    EXPECT_THAT(run("clean --each a.jpg").err, HasSubstr("--each"));
    EXPECT_THAT(files(), ElementsAre("a.jpg"));
}

TEST_F(Sheets, OfOtherPicturesBecomePagesAllTheSame) {
    photographDesk("a.jpg");
    photograph("b.jpg");
    const Outcome outcome = run("clean --crop --json a.jpg b.jpg");
    EXPECT_EQ(outcome.status, kNothingFound);
    EXPECT_EQ(outcome.json()[1]["file"], "b-clean.jpg");
    EXPECT_THAT(files(), ElementsAre("a.jpg", "b-clean.jpg", "b.jpg"));
}

TEST_F(Sheets, BecomeAPageEach) {
    photographTwo("a.jpg");
    const Outcome outcome = run("clean --each --json a.jpg");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(files(), ElementsAre("a-clean-1.jpg", "a-clean-2.jpg", "a.jpg"));
    std::vector<int> widths{outcome.json()[0]["width"], outcome.json()[1]["width"]};
    std::sort(widths.begin(), widths.end());
    EXPECT_NEAR(widths[0], 360, 4);
    EXPECT_NEAR(widths[1], 460, 4);
}

TEST_F(Sheets, BecomeAPageEachOrNoneAtAll) {
    photographTwo("a.jpg");
    std::ofstream(file("a-clean-2.jpg")) << "mine";
    EXPECT_EQ(run("clean --each a.jpg").status, kFileFailed);
    EXPECT_THAT(files(), ElementsAre("a-clean-2.jpg", "a.jpg"));
    EXPECT_EQ(run("clean --each --force a.jpg").status, kDone);
}

TEST_F(Sheets, AreFoundInThePictureAsItsOrientationTagShowsIt) {
    const cv::Mat picture = photograph();
    cv::Mat onItsSide;
    cv::rotate(picture, onItsSide, cv::ROTATE_90_COUNTERCLOCKWISE);
    cv::imwrite(file("a.jpg"), onItsSide, {cv::IMWRITE_JPEG_QUALITY, 95});
    turnOnItsSide("a.jpg");
    const Outcome outcome = run("clean --crop --json a.jpg");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_LT(errorOf(outcome.json()[0]["sheet"]), 1.5);
}

TEST_F(Sheets, NeedNotBeFoundForALook) {
    photograph("a.jpg");
    const Outcome outcome = run("clean --look paper --json a.jpg");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_TRUE(outcome.json()[0]["sheet"].is_null());
    EXPECT_EQ(outcome.json()[0]["width"], kPicture.width);
    EXPECT_EQ(run("clean --colour bw a.jpg").status, kDone);
    EXPECT_EQ(cv::imread(file("a-clean.png")).size(), kPicture);
}

TEST_F(Sheets, AreCroppedToTheirRectangleLikeStills) {
    drawSheet("a.png");
    ASSERT_EQ(run("clean --crop=rectangle a.png").status, kDone);
    const Outcome still = run("--virtual=a.png capture --crop --clean-edges --clean-background "
                              "--format yuyv --size 1280x960 still.png");
    ASSERT_EQ(still.status, kDone) << still.err;
    const cv::Mat page = cv::imread(file("a-clean.png"));
    const cv::Mat fromCamera = cv::imread(file("still.png"));
    EXPECT_NEAR(page.cols, fromCamera.cols, 8);
    EXPECT_NEAR(page.rows, fromCamera.rows, 8);
    ASSERT_EQ(run("clean --crop=rectangle --colour bw --force a.png").status, kDone);
    EXPECT_EQ(bytesOf("a-clean.png").substr(24, 2), std::string("\1\0", 2));
}

TEST_F(Sheets, AreNotCroppedToTheRectangleOfNothing) {
    cv::imwrite(file("a.png"), cv::Mat(60, 60, CV_8UC3, cv::Scalar::all(90)));
    const Outcome outcome = run("clean --crop=rectangle --json a.png");
    EXPECT_EQ(outcome.status, kNothingFound);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_TRUE(outcome.json()[0]["sheet"].is_null());
    EXPECT_THAT(files(), ElementsAre("a.png"));
}

TEST_F(Sheets, AreRefusedContradictoryWishes) {
    photograph("a.jpg");
    for (const std::string wishes :
         {"--crop=oval", "--look dim", "--colour blue", "--crop --edges",
          "--look photo --background", "--crop=rectangle --look paper", "--crop=rectangle --each",
          "--crop=rectangle --bright-sheet", "--each --in-place --force",
          "--crop --colour bw --in-place --force"}) {
        const Outcome outcome = run("clean a.jpg " + wishes);
        EXPECT_EQ(outcome.status, kUsage) << wishes;
        EXPECT_THAT(outcome.err, isOneSentence()) << wishes;
    }
    EXPECT_THAT(files(), ElementsAre("a.jpg"));
}

TEST_F(Sheets, DoNotReplaceEachOther) {
    photograph("a.jpg");
    photograph("a.tiff");
    const Outcome outcome = run("clean --crop --colour bw --force a.jpg a.tiff");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_THAT(outcome.err, HasSubstr("a.jpg and a.tiff would both become a-clean.png"));
    EXPECT_THAT(files(), ElementsAre("a.jpg", "a.tiff"));
}

TEST_F(Sheets, AreNotWrittenOntoAFullDisk) {
    photograph("a.jpg");
    for (const std::string colour : {"colour", "bw"}) {
        const FullDisk disk(1000);
        const Outcome outcome = run("clean --crop --colour " + colour + " a.jpg");
        EXPECT_EQ(outcome.status, kFileFailed) << colour;
        EXPECT_THAT(outcome.err, isOneSentence()) << colour;
    }
    EXPECT_THAT(files(), ElementsAre("a.jpg"));
}

TEST_F(Sheets, OfDamagedPicturesLeaveNothing) {
    photograph("a.jpg");
    std::ofstream(file("b.png"), std::ios::binary) << "\x89PNG\r\n\x1a\n"
                                                   << "no more";
    const Outcome outcome = run("clean --crop b.png a.jpg");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_THAT(files(), ElementsAre("a.jpg", "b.png"));
}

} // namespace

// The pictures: the drawn scene, photographs, and their encodings.
#include "picture/jpeg.h"
#include "picture/picture_source.h"
#include "picture/yuyv.h"
#include "scene/scene.h"
#include "support/scratch_folder.h"
#include "virtual_camera_pictures.h"

#include <gmock/gmock.h>
#include <opencv2/imgproc.hpp>

namespace {

using namespace doccam::virtualcam;

TEST(DrawnScene, PutsTheSheetBetweenItsCorners) {
    SceneSettings settings;
    settings.angle = 10;
    const cv::Mat scene = drawScene(settings, {1280, 960});
    const auto corners = sheetCorners(settings, scene.size());
    const cv::Point2f centre = (corners[0] + corners[2]) / 2;
    for (const cv::Point2f& corner : corners) {
        const cv::Point inside = corner + (centre - corner) * 0.02F;
        const cv::Point outside = corner - (centre - corner) * 0.02F;
        EXPECT_GT(scene.at<cv::Vec3b>(inside)[1], 200) << corner;
        EXPECT_LT(scene.at<cv::Vec3b>(outside)[1], 80) << corner;
    }
}

TEST(DrawnScene, ShowsTheFlatSheetWhereItLies) {
    SceneSettings settings;
    const cv::Mat scene = drawScene(settings, {3264, 2448});
    const auto corners = sheetCorners(settings, scene.size());
    const cv::Mat flat = flatSheet(settings);
    const cv::Point2f target[4] = {{0, 0},
                                   {static_cast<float>(flat.cols), 0},
                                   {static_cast<float>(flat.cols), static_cast<float>(flat.rows)},
                                   {0, static_cast<float>(flat.rows)}};
    cv::Mat straight;
    cv::warpPerspective(scene, straight, cv::getPerspectiveTransform(corners.data(), target),
                        flat.size());
    EXPECT_GT(cv::PSNR(straight, flat), 20.0);
}

SceneSettings tiltedOnDark() {
    SceneSettings settings;
    settings.desk = "dark";
    settings.view.tilt = 20;
    settings.view.tiltDirection = 60;
    return settings;
}

TEST(DrawnScene, PutsTheSheetBetweenItsCornersUnderATiltedCamera) {
    const cv::Mat scene = drawScene(tiltedOnDark(), {1280, 960});
    const auto corners = sheetCorners(tiltedOnDark(), scene.size());
    const cv::Point2f centre = (corners[0] + corners[2]) / 2;
    for (const cv::Point2f& corner : corners) {
        const cv::Point inside = corner + (centre - corner) * 0.02F;
        const cv::Point outside = corner - (centre - corner) * 0.02F;
        EXPECT_GT(scene.at<cv::Vec3b>(inside)[1], 200) << corner;
        EXPECT_LT(scene.at<cv::Vec3b>(outside)[1], 100) << corner;
    }
    // Sides that converge.
    EXPECT_GT(std::abs(cv::norm(corners[1] - corners[0]) - cv::norm(corners[2] - corners[3])), 20);
}

TEST(DrawnScene, IsDarkerWhereTheLightFallsOff) {
    SceneSettings settings = tiltedOnDark();
    settings.light.gradient = 3;
    settings.light.gradientDirection = 0;
    const cv::Mat scene = drawScene(settings, {640, 480});
    const auto corners = sheetCorners(settings, scene.size());
    const auto level = [&](float across) {
        const cv::Point2f left = corners[0] + (corners[3] - corners[0]) * 0.02F;
        const cv::Point2f right = corners[1] + (corners[2] - corners[1]) * 0.02F;
        return static_cast<int>(scene.at<cv::Vec3b>(cv::Point(left + (right - left) * across))[1]);
    };
    EXPECT_GT(level(0.05F), level(0.95F) + 20);
}

TEST(DrawnScene, LeavesTheDeskEmptyWhereTheSheetIsFarAway) {
    for (const char* const desk : {"dark", "wood", "grey", "white", "cloth"}) {
        SceneSettings settings = tiltedOnDark();
        settings.desk = desk;
        SceneSettings empty = settings;
        settings.centreX = 10;
        empty.centreX = -10;
        const cv::Size size(320, 240);
        EXPECT_EQ(cv::norm(drawScene(settings, size), drawScene(empty, size), cv::NORM_INF), 0);
    }
}

TEST(DrawnScene, DrawsARedStamp) {
    const cv::Mat flat = flatSheet({});
    cv::Mat red;
    cv::inRange(flat, cv::Scalar(0, 0, 150), cv::Scalar(90, 90, 255), red);
    EXPECT_GT(cv::countNonZero(red), 5000);
}

TEST(DrawnScene, ShrinksSymbolsThatAreTooWide) {
    SceneSettings settings;
    settings.code128Text = std::string(60, 'W');
    EXPECT_EQ(flatSheet(settings).size(), flatSheet({}).size());
}

TEST(DrawnScene, RepeatsANoisePatternForTheSameNumber) {
    const cv::Mat plain(600, 700, CV_8UC3, cv::Scalar::all(128));
    const auto noisy = [&](int pattern) {
        cv::Mat copy = plain.clone();
        addSensorNoise(copy, 2.0, pattern);
        return copy;
    };
    EXPECT_EQ(cv::norm(noisy(1), noisy(1), cv::NORM_INF), 0);
    EXPECT_GT(cv::norm(noisy(1), noisy(2), cv::NORM_INF), 0);
    EXPECT_GT(cv::PSNR(noisy(1), plain), 40.0);
}

TEST(CameraPicture, HalvesChromaAcrossOnly) {
    const cv::Mat picture(32, 64, CV_8UC3, cv::Scalar(10, 200, 90));
    const std::vector<std::uint8_t> jpeg = encodeJpeg(picture, 85);
    const std::vector<std::uint8_t> start{0xFF, 0xC0};
    const auto frame = std::search(jpeg.begin(), jpeg.end(), start.begin(), start.end());
    ASSERT_GT(jpeg.end() - frame, 18);
    EXPECT_EQ(frame[11], 0x21); // sampling of Y: two across, one down
    EXPECT_EQ(frame[14], 0x11);
    EXPECT_EQ(frame[17], 0x11);
}

TEST(CameraPicture, KeepsLumaBetween16And235) {
    cv::Mat picture(1, 4, CV_8UC3, cv::Scalar::all(0));
    picture.at<cv::Vec3b>(0, 2) = picture.at<cv::Vec3b>(0, 3) = {255, 255, 255};
    EXPECT_THAT(encodeYuyv(picture), testing::ElementsAre(16, 128, 16, 128, 235, 128, 235, 128));
}

TEST(CameraPicture, TurnsPureColoursIntoTheirYuyv) {
    const cv::Mat red(1, 2, CV_8UC3, cv::Scalar(0, 0, 255));
    EXPECT_THAT(encodeYuyv(red), testing::ElementsAre(81, 90, 81, 240));
    const cv::Mat blue(1, 2, CV_8UC3, cv::Scalar(255, 0, 0));
    EXPECT_THAT(encodeYuyv(blue), testing::ElementsAre(41, 240, 41, 110));
}

TEST(CameraPicture, ShowsAPhotographAtTheRequestedSize) {
    const doccam::test::ScratchFolder folder;
    const cv::Mat photo = drawScene({}, {1600, 1200});
    doccam::test::writeJpeg(folder.file("photo.jpg"), photo);
    doccam::test::writePng(folder.file("photo.png"), photo);
    for (const char* name : {"photo.jpg", "photo.png"}) {
        PictureSource source(folder.file(name), SceneSettings{});
        doccam::test::writeBytes(folder.file("shown.jpg"), *source.frame(kMjpeg, {640, 480}, 0));
        cv::Mat expected;
        cv::resize(photo, expected, {640, 480}, 0, 0, cv::INTER_AREA);
        const cv::Mat shown = loadPhoto(folder.file("shown.jpg"));
        ASSERT_EQ(shown.size(), expected.size());
        EXPECT_GT(cv::PSNR(shown, expected), 30.0) << name;
    }
}

TEST(CameraPicture, NamesThePhotographThatCannotBeRead) {
    EXPECT_THROW(loadPhoto("/nonexistent/photo.jpg"), std::runtime_error);
}

TEST(CameraPicture, EncodesEachFrameOnce) {
    PictureSource one("", SceneSettings{});
    PictureSource other("", SceneSettings{});
    EXPECT_EQ(one.frame(kMjpeg, {640, 480}, 1), other.frame(kMjpeg, {640, 480}, 1));
}

} // namespace

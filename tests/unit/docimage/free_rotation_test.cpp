#include "docimage/turn/turned_picture.h"
#include "support/same_picture.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/imgproc/imgproc_c.h>

#include <limits>

namespace doccam {
namespace {

cv::Mat noise(cv::Size size) {
    cv::Mat picture(size, CV_8UC3);
    cv::RNG(11).fill(picture, cv::RNG::UNIFORM, 1, 256);
    return picture;
}

// What OpenCV's C interface computes for the same arguments.
cv::Mat mapOfCInterface(cv::Size canvas, cv::Size picture, double degrees) {
    cv::Mat map(2, 3, CV_32F);
    CvMat view = cvMat(map);
    cv2DRotationMatrix(cvPoint2D32f(picture.width / 2, picture.height / 2), degrees, 1.0, &view);
    map.at<float>(0, 2) += static_cast<float>((canvas.width - picture.width) / 2);
    map.at<float>(1, 2) += static_cast<float>((canvas.height - picture.height) / 2);
    return map;
}

TEST(RotateImage, ReturnsAnEqualPictureForAngle0) {
    const cv::Mat picture = noise({37, 24});
    const cv::Mat turned = rotateImage(picture, 0);
    EXPECT_TRUE(test::isSamePicture(turned, picture));
    EXPECT_NE(turned.data, picture.data);
}

TEST(RotateImage, PutsTheLeftColumnAlongTheTopFor90Degrees) {
    const cv::Mat picture = noise({37, 25});
    const cv::Mat turned = rotateImage(picture, 90);
    ASSERT_EQ(turned.size(), cv::Size(25, 37));
    for (int i = 0; i < picture.rows; ++i) {
        EXPECT_EQ(turned.at<cv::Vec3b>(0, picture.rows - 1 - i), picture.at<cv::Vec3b>(i, 0)) << i;
    }
}

TEST(RotateImage, ExchangesTheSidesFor90DegreesOfAnEvenPicture) {
    EXPECT_EQ(rotateImage(noise({40, 26}), 90).size(), cv::Size(26, 40));
}

TEST(RotateImage, Turns100PixelsBy45DegreesInto141WithBlackCorners) {
    const cv::Mat turned = rotateImage(cv::Mat(100, 100, CV_8UC3, cv::Scalar(9, 99, 199)), 45);
    ASSERT_EQ(turned.size(), cv::Size(141, 141));
    EXPECT_EQ(turned.at<cv::Vec3b>(70, 70), cv::Vec3b(9, 99, 199));
    for (const cv::Point corner : {cv::Point(2, 2), cv::Point(138, 2), cv::Point(2, 138),
                                   cv::Point(138, 138), cv::Point(30, 30)}) {
        EXPECT_EQ(turned.at<cv::Vec3b>(corner), cv::Vec3b(0, 0, 0)) << corner;
    }
}

cv::Mat withDotAtTheTop() {
    cv::Mat picture(101, 101, CV_8UC3, cv::Scalar::all(0));
    picture(cv::Rect(48, 3, 5, 5)).setTo(cv::Scalar::all(255));
    return picture;
}

int brightness(const cv::Mat& picture, cv::Rect place) {
    return static_cast<int>(cv::mean(picture(place))[0]);
}

TEST(RotateImage, TurnsClockwiseForAPositiveAngle) {
    const cv::Mat turned = rotateImage(withDotAtTheTop(), 30);
    EXPECT_GT(brightness(turned, {turned.cols / 2, 0, turned.cols / 2, turned.rows / 2}), 0);
    EXPECT_EQ(brightness(turned, {0, 0, turned.cols / 2 - 8, turned.rows}), 0);
}

TEST(RotateImage, TurnsCounterClockwiseForANegativeAngle) {
    const cv::Mat turned = rotateImage(withDotAtTheTop(), -30);
    EXPECT_GT(brightness(turned, {0, 0, turned.cols / 2, turned.rows / 2}), 0);
    const int right = turned.cols / 2 + 8;
    EXPECT_EQ(brightness(turned, {right, 0, turned.cols - right, turned.rows}), 0);
}

TEST(RotateImage, LeavesItsSourceAlone) {
    const cv::Mat picture = noise({31, 17});
    const cv::Mat before = picture.clone();
    rotateImage(picture, 33.3F);
    EXPECT_TRUE(test::isSamePicture(picture, before));
}

TEST(RotateImage, EqualsTheCInterfacesMapAndWarpToTheBit) {
    const cv::Mat picture = noise({83, 58});
    for (float angle = -400; angle < 460; angle += 3.37F) {
        SCOPED_TRACE(angle);
        const double degrees = -angle;
        const cv::Size canvas = canvasSize(picture.size(), CV_PI * degrees / 180.0);
        const cv::Mat map = mapOfCInterface(canvas, picture.size(), degrees);
        EXPECT_TRUE(test::isSamePicture(turnOnto(canvas, picture.size(), degrees), map));
        cv::Mat expected(canvas, CV_8UC3);
        CvMat from = cvMat(picture);
        CvMat to = cvMat(expected);
        CvMat mapView = cvMat(map);
        cvWarpAffine(&from, &to, &mapView, int{CV_INTER_LINEAR} | int{CV_WARP_FILL_OUTLIERS},
                     cvScalarAll(0));
        EXPECT_TRUE(test::isSamePicture(rotateImage(picture, angle), expected));
    }
}

TEST(RotateImage, HalvesOddDifferencesTowardZero) {
    // A canvas three pixels narrower and five higher than the picture.
    const cv::Mat map = turnOnto({10, 20}, {13, 15}, 0);
    EXPECT_EQ(map.at<float>(0, 2), -1.0F);
    EXPECT_EQ(map.at<float>(1, 2), 2.0F);
}

TEST(RotateImage, ThrowsForAnAngleThatIsNotFinite) {
    const cv::Mat picture = noise({8, 8});
    EXPECT_THROW(rotateImage(picture, std::numeric_limits<float>::quiet_NaN()), cv::Exception);
    EXPECT_THROW(rotateImage(picture, std::numeric_limits<float>::infinity()), cv::Exception);
    EXPECT_THROW(rotateImage(picture, -std::numeric_limits<float>::infinity()), cv::Exception);
}

TEST(RotateImage, AcceptsTheLargestFiniteAngle) {
    EXPECT_NO_THROW(rotateImage(noise({8, 8}), std::numeric_limits<float>::max()));
}

TEST(RotateImage, ThrowsForAnEmptyPicture) {
    EXPECT_THROW(rotateImage(cv::Mat(), 10), cv::Exception);
}

TEST(RotateImage, ThrowsForAPictureTooLongForOpenCv) {
    EXPECT_THROW(rotateImage(cv::Mat(1, 32767, CV_8UC3), 0), cv::Exception);
    EXPECT_EQ(rotateImage(cv::Mat(1, 32766, CV_8UC3), 0).cols, 32766);
}

TEST(RotateImage, ThrowsForSamplesThatOpenCvCannotTurn) {
    EXPECT_THROW(rotateImage(cv::Mat(8, 8, CV_32SC3, cv::Scalar::all(1)), 10), cv::Exception);
}

} // namespace
} // namespace doccam

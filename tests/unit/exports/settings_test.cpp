// The settings operations, through the record they write.
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>

#include <limits>
#include <thread>

namespace doccam::test {
namespace {

constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();

void firstFrames(unsigned char* /*data*/, int /*width*/, int /*height*/) {}

void otherFrames(unsigned char* /*data*/, int /*width*/, int /*height*/) {}

void firstPreviews(unsigned char* /*data*/, int /*width*/, int /*height*/, int /*x*/, int /*y*/) {}

void otherPreviews(unsigned char* /*data*/, int /*width*/, int /*height*/, int /*x*/, int /*y*/) {}

class Settings : public testing::Test {
  protected:
    void SetUp() override { forgetCallbacks(); }

    void TearDown() override { forgetCallbacks(); }

    static void forgetCallbacks() {
        state().settings.pGetVideoStream = nullptr;
        state().settings.pGetVideoWebStream = nullptr;
    }
};

TEST_F(Settings, KeepTheFirstFrameCallback) {
    EXPECT_EQ(SetDataCallback(firstFrames), 0);
    EXPECT_EQ(SetDataCallback(otherFrames), 0);
    EXPECT_EQ(SetDataCallback(nullptr), 0);
    EXPECT_EQ(state().settings.pGetVideoStream, &firstFrames);
    EXPECT_EQ(state().settings.pGetVideoWebStream, nullptr);
}

TEST_F(Settings, KeepTheFirstPreviewCallback) {
    EXPECT_EQ(SetWebDataCallback(firstPreviews), 0);
    EXPECT_EQ(SetWebDataCallback(otherPreviews), 0);
    EXPECT_EQ(SetWebDataCallback(nullptr), 0);
    EXPECT_EQ(state().settings.pGetVideoWebStream, &firstPreviews);
    EXPECT_EQ(state().settings.pGetVideoStream, nullptr);
}

TEST_F(Settings, TakeACallbackAfterANullOne) {
    SetDataCallback(nullptr);
    SetDataCallback(otherFrames);
    EXPECT_EQ(state().settings.pGetVideoStream, &otherFrames);
}

TEST_F(Settings, KeepOneOfTwoCallbacksRegisteredAtOnce) {
    std::thread other([] { SetDataCallback(otherFrames); });
    SetDataCallback(firstFrames);
    const FrameCallback kept = state().settings.pGetVideoStream;
    other.join();
    EXPECT_EQ(state().settings.pGetVideoStream, kept);
}

TEST_F(Settings, FoldFormatsAboveOneToYuyv) {
    SetVideoFormat(5);
    EXPECT_EQ(state().settings.CameraFormat, 1);
    SetVideoFormat(0);
    EXPECT_EQ(state().settings.CameraFormat, 0);
    SetVideoFormat(-3);
    EXPECT_EQ(state().settings.CameraFormat, -3);
    SetVideoFormat(1);
    EXPECT_EQ(state().settings.CameraFormat, 1);
}

TEST_F(Settings, StoreAnyValueUnchecked) {
    for (const int value : {7, -1, kMax, kMin, 0}) {
        EXPECT_EQ(SetRotate(value), 0);
        SetCutType(value);
        SetColorMode(value);
        SetFileFormat(value);
        SetJpgQuality(value);
        SetDelBlackedge(value);
        SetDelBackColor(value);
        EXPECT_EQ(state().settings.RotateAngle, value);
        EXPECT_EQ(state().settings.cutType, value);
        EXPECT_EQ(state().settings.colorMode, value);
        EXPECT_EQ(state().settings.fileFormat, value);
        EXPECT_EQ(GetFileFormat(), value);
        EXPECT_EQ(state().settings.jpgQuality, value);
        EXPECT_EQ(state().settings.isDelBlackedge, value);
        EXPECT_EQ(state().settings.isDelBcakColor, value);
    }
}

TEST_F(Settings, RefuseAPageEngineThatDoesNotExist) {
    EXPECT_EQ(state().settings.pageEngine, 0);
    EXPECT_EQ(SetPageEngine(1), 0);
    for (const int value : {2, -1, kMax, kMin}) {
        EXPECT_EQ(SetPageEngine(value), -1);
        EXPECT_EQ(state().settings.pageEngine, 1);
    }
    EXPECT_EQ(SetPageEngine(0), 0);
    EXPECT_EQ(state().settings.pageEngine, 0);
}

TEST_F(Settings, EachHaveTheirOwnField) {
    SetRotate(11);
    SetCutType(12);
    SetColorMode(13);
    SetFileFormat(14);
    SetJpgQuality(15);
    SetDelBlackedge(16);
    SetDelBackColor(17);
    EXPECT_EQ(state().settings.RotateAngle, 11);
    EXPECT_EQ(state().settings.cutType, 12);
    EXPECT_EQ(state().settings.colorMode, 13);
    EXPECT_EQ(state().settings.fileFormat, 14);
    EXPECT_EQ(state().settings.jpgQuality, 15);
    EXPECT_EQ(state().settings.isDelBlackedge, 16);
    EXPECT_EQ(state().settings.isDelBcakColor, 17);
}

TEST_F(Settings, DeriveTheFrameBytesFromTheGrabSize) {
    setGrabSize(3264, 2448);
    EXPECT_EQ(state().session.nWidth, 3264);
    EXPECT_EQ(state().session.nHeight, 2448);
    EXPECT_EQ(state().session.nSize, 23970816);
}

TEST_F(Settings, WrapTheFrameBytesOfANonsenseGrabSize) {
    setGrabSize(65536, 65536);
    EXPECT_EQ(state().session.nSize, 0);
    setGrabSize(kMax, kMax);
    EXPECT_EQ(state().session.nSize, 3);
    setGrabSize(-2, 5);
    EXPECT_EQ(state().session.nSize, -30);
}

TEST_F(Settings, HaveAnUploadHookThatDoesNothing) {
    char file[] = "/nowhere/page.jpg";
    char url[] = "http://localhost/";
    EXPECT_EQ(HttpUpFile(file, url), 0);
    EXPECT_EQ(HttpUpFile(nullptr, nullptr), 0);
}

} // namespace
} // namespace doccam::test

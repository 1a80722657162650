// What every field of the state record is when the library has been loaded.
#include "api/library_state.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>

namespace doccam::test {
namespace {

using testing::Each;
using testing::IsEmpty;
using testing::IsNull;

template <typename Record>
bool allBytesZero(const Record& record) {
    const Record zero{};
    return std::memcmp(&record, &zero, sizeof record) == 0;
}

class FreshState : public testing::Test {
  protected:
    LibraryState fresh;
};

TEST_F(FreshState, HasNoSession) {
    EXPECT_EQ(fresh.cam_fd, -1);
    EXPECT_FALSE(fresh.bKeep);
    EXPECT_FALSE(fresh.isInsert1000M);
    EXPECT_EQ(fresh.nWidth, 0);
    EXPECT_EQ(fresh.nHeight, 0);
    EXPECT_EQ(fresh.nSize, 0);
    EXPECT_EQ(fresh.pdecode, nullptr);
    EXPECT_EQ(sizeof fresh.pix_format, 64U);
    EXPECT_THAT(fresh.pix_format, Each('\0'));
}

TEST_F(FreshState, AsksForYuyvInFiveBuffers) {
    EXPECT_EQ(fresh.CameraFormat, 1);
    EXPECT_TRUE(fresh.isMjpegMode);
    EXPECT_EQ(fresh.buffer_count, 5);
    ASSERT_NE(fresh.video_buffer_ptr, nullptr);
    EXPECT_TRUE(std::all_of(&fresh.video_buffer_ptr[0], &fresh.video_buffer_ptr[0] + 5,
                            [](const unsigned char* start) { return start == nullptr; }));
}

TEST_F(FreshState, KnowsNoDevicesAndSizes) {
    EXPECT_EQ(fresh.deviceCount, 0);
    EXPECT_EQ(fresh.devices.size(), 10U);
    EXPECT_THAT(fresh.devices, Each(std::string()));
    EXPECT_EQ(fresh.gpyVendor.size(), 9U);
    EXPECT_EQ(fresh.gpyProduct.size(), 9U);
    EXPECT_THAT(fresh.formatList, IsEmpty());
    EXPECT_THAT(fresh.yuvWidthList, IsEmpty());
    EXPECT_THAT(fresh.yuvHeightList, IsEmpty());
    EXPECT_THAT(fresh.mjpegWidthList, IsEmpty());
    EXPECT_THAT(fresh.mjpegHeightList, IsEmpty());
    EXPECT_THAT(fresh.otherfmtWidthList, IsEmpty());
    EXPECT_THAT(fresh.otherfmtHeightList, IsEmpty());
}

TEST_F(FreshState, HasUsedNoControl) {
    EXPECT_TRUE(allBytesZero(fresh.qctrl));
    EXPECT_TRUE(allBytesZero(fresh.ctrl));
}

TEST_F(FreshState, HasNoImagesAndCallbacks) {
    EXPECT_TRUE(fresh.srcimage.empty());
    EXPECT_TRUE(fresh.roimage.empty());
    EXPECT_TRUE(fresh.zoomimage.empty());
    EXPECT_EQ(fresh.pGetVideoStream, nullptr);
    EXPECT_EQ(fresh.pGetVideoWebStream, nullptr);
    EXPECT_EQ(fresh.WEB_BUF, nullptr);
}

TEST_F(FreshState, HasNoRequestsPending) {
    EXPECT_FALSE(fresh.isShootPhoto);
    EXPECT_EQ(fresh.IsRecogBarQr, -99);
    EXPECT_EQ(SharedPath::kCapacity, 255U);
    EXPECT_THAT(fresh.imgSavePath.load(), Each('\0'));
    EXPECT_STREQ(fresh.BarQrContent.current(), "");
}

TEST_F(FreshState, SavesColourJpegsOfQuality85Unchanged) {
    EXPECT_EQ(fresh.cutType, 0);
    EXPECT_EQ(fresh.colorMode, 0);
    EXPECT_EQ(fresh.fileFormat, 0);
    EXPECT_EQ(fresh.jpgQuality, 85);
    EXPECT_EQ(fresh.isDelBlackedge, 0);
    EXPECT_EQ(fresh.isDelBcakColor, 0);
    EXPECT_EQ(fresh.RotateAngle, 0);
    EXPECT_EQ(fresh.RotateFlag, 0);
}

TEST_F(FreshState, HasAnEmptyPreviewAtHalfScale) {
    for (const std::atomic<int>* const field :
         {&fresh.FormWidth, &fresh.FormHeight, &fresh.FormStartX, &fresh.FormStartY,
          &fresh.ShowWidth, &fresh.ShowHeight, &fresh.ZoomWidth, &fresh.ZoomHeight,
          &fresh.ZoomStartX, &fresh.ZoomStartY, &fresh.VideoOffsetX, &fresh.VideoOffsetY}) {
        EXPECT_EQ(*field, 0);
    }
    EXPECT_EQ(fresh.pZoomScale, 50.0);
    EXPECT_EQ(fresh.pBestScale, 50.0);
}

TEST_F(FreshState, HasFoundNoSheet) {
    EXPECT_EQ(sizeof fresh.CutPoint, 160U);
    EXPECT_THAT(fresh.CutPoint, Each(0));
    for (const int field :
         {fresh.CutImgStartX, fresh.CutImgStartY, fresh.CutImgW, fresh.CutImgH, fresh.CutLastW,
          fresh.CutLastH, fresh.ManualCutX, fresh.ManualCutY, fresh.ManualCutW, fresh.ManualCutH}) {
        EXPECT_EQ(field, 0);
    }
    EXPECT_THAT(fresh.areaList, IsEmpty());
    EXPECT_THAT(fresh.cvSeqList, IsEmpty());
}

TEST_F(FreshState, HasNoPdf) {
    EXPECT_THAT(fresh.pdf, IsNull());
    EXPECT_TRUE(allBytesZero(fresh.env));
    EXPECT_EQ(fresh.outPdfPath, "");
    EXPECT_THAT(fresh.pdf_filelist, IsEmpty());
    EXPECT_THAT(fresh.img_filelist, IsEmpty());
    EXPECT_THAT(fresh.addFileList, IsEmpty());
}

TEST(TheState, IsOneRecord) {
    EXPECT_EQ(&state(), &state());
}

} // namespace
} // namespace doccam::test

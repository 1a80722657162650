// The in-memory JPEG source and the error exit, by themselves.
#include "decode/jpeg_memory_source.h"
#include "jpeg_samples.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>

extern "C" {
#include <jerror.h>
}

namespace doccam::test {
namespace {

class JpegMemorySource : public testing::Test {
  protected:
    void SetUp() override {
        jpeg_.err = jpeg_std_error(&errors_.manager);
        jpeg_create_decompress(&jpeg_);
    }

    void TearDown() override { jpeg_destroy_decompress(&jpeg_); }

    // The value the error exit jumps back with while data is set as the source, or 0.
    int jumpWhileSet(unsigned char* data, unsigned long size) {
        jpeg_.err->error_exit = MyErrorExit;
        const int jumped = setjmp(errors_.escape);
        if (jumped == 0) {
            jpeg_mem_src_tj(&jpeg_, data, size);
        }
        return jumped;
    }

    jpeg_decompress_struct jpeg_{};
    JpegErrors errors_{};
    Bytes data_{1, 2, 3, 4, 5};
};

TEST_F(JpegMemorySource, StartsAtTheFirstByte) {
    jpeg_mem_src_tj(&jpeg_, data_.data(), data_.size());
    EXPECT_EQ(jpeg_.src->next_input_byte, data_.data());
    EXPECT_EQ(jpeg_.src->bytes_in_buffer, 5U);
}

TEST_F(JpegMemorySource, InstallsItsCallbacks) {
    jpeg_mem_src_tj(&jpeg_, data_.data(), data_.size());
    EXPECT_EQ(jpeg_.src->init_source, &init_mem_source);
    EXPECT_EQ(jpeg_.src->fill_input_buffer, &fill_mem_input_buffer);
    EXPECT_EQ(jpeg_.src->skip_input_data, &skip_input_data);
    EXPECT_EQ(jpeg_.src->resync_to_restart, &jpeg_resync_to_restart);
    EXPECT_EQ(jpeg_.src->term_source, &term_source);
}

TEST_F(JpegMemorySource, KeepsItsRecordForTheNextPicture) {
    jpeg_mem_src_tj(&jpeg_, data_.data(), data_.size());
    const jpeg_source_mgr* const first = jpeg_.src;
    jpeg_mem_src_tj(&jpeg_, data_.data() + 1, 2);
    EXPECT_EQ(jpeg_.src, first);
    EXPECT_EQ(jpeg_.src->next_input_byte, data_.data() + 1);
    EXPECT_EQ(jpeg_.src->bytes_in_buffer, 2U);
}

TEST_F(JpegMemorySource, TakesTheErrorExitForEmptyInput) {
    PrintedText printed;
    EXPECT_EQ(jumpWhileSet(nullptr, 5), 1);
    EXPECT_EQ(errors_.manager.msg_code, JERR_INPUT_EMPTY);
    EXPECT_EQ(jumpWhileSet(data_.data(), 0), 1);
    EXPECT_EQ(printed.take(), "Empty input file\nEmpty input file\n");
    EXPECT_EQ(jpeg_.src, nullptr);
}

TEST_F(JpegMemorySource, ServesAnEndMarkerWithAWarningWhenTheDataEnds) {
    jpeg_mem_src_tj(&jpeg_, data_.data(), data_.size());
    PrintedText warnings(PrintedText::Stream::kError);
    EXPECT_EQ(fill_mem_input_buffer(&jpeg_), TRUE);
    EXPECT_EQ(warnings.take(), "Premature end of JPEG file\n");
    EXPECT_EQ(jpeg_.err->num_warnings, 1);
    EXPECT_EQ(jpeg_.err->msg_code, JWRN_JPEG_EOF);
    ASSERT_EQ(jpeg_.src->bytes_in_buffer, 2U);
    EXPECT_EQ(jpeg_.src->next_input_byte[0], 0xFF);
    EXPECT_EQ(jpeg_.src->next_input_byte[1], 0xD9);
}

TEST_F(JpegMemorySource, SkipsForwardInTheData) {
    jpeg_mem_src_tj(&jpeg_, data_.data(), data_.size());
    skip_input_data(&jpeg_, 0);
    skip_input_data(&jpeg_, -3);
    EXPECT_EQ(jpeg_.src->bytes_in_buffer, 5U);
    skip_input_data(&jpeg_, 3);
    EXPECT_EQ(*jpeg_.src->next_input_byte, 4);
    EXPECT_EQ(jpeg_.src->bytes_in_buffer, 2U);
    skip_input_data(&jpeg_, 2);
    EXPECT_EQ(jpeg_.src->bytes_in_buffer, 0U);
    EXPECT_EQ(jpeg_.err->num_warnings, 0);
}

TEST_F(JpegMemorySource, SkipsIntoTheEndMarkerPastTheData) {
    jpeg_mem_src_tj(&jpeg_, data_.data(), data_.size());
    PrintedText warnings(PrintedText::Stream::kError);
    skip_input_data(&jpeg_, 6);
    warnings.take();
    EXPECT_EQ(jpeg_.src->bytes_in_buffer, 1U);
    EXPECT_EQ(*jpeg_.src->next_input_byte, 0xD9);
    skip_input_data(&jpeg_, 4);
    EXPECT_EQ(jpeg_.src->bytes_in_buffer, 1U);
    EXPECT_EQ(jpeg_.err->num_warnings, 3);
}

TEST_F(JpegMemorySource, HasNothingToDoAtTheStartAndTheEnd) {
    jpeg_mem_src_tj(&jpeg_, data_.data(), data_.size());
    init_mem_source(&jpeg_);
    term_source(&jpeg_);
    EXPECT_EQ(jpeg_.src->next_input_byte, data_.data());
    EXPECT_EQ(jpeg_.src->bytes_in_buffer, 5U);
}

} // namespace
} // namespace doccam::test

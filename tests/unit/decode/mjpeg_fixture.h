// A fresh process-wide MJPEG decoder for each test.
#pragma once

#include "decode/mjpeg_frames.h"
#include "jpeg_samples.h"
#include "modules/mjpeg/libav_decoder.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

namespace doccam::test {

class MjpegFixture : public testing::Test {
  protected:
    void SetUp() override {
        av_decode_deinit();
        av_decode_init();
    }

    void TearDown() override { av_decode_deinit(); }

    static DecoderSlot& slot() { return state().session.pdecode; }

    static MjpegDecoder& decoder() { return *state().session.pdecode.load(); }

    // An image of one colour, to see whether it was written to.
    static cv::Mat untouched(int width, int height) {
        return {height, width, CV_8UC3, cv::Scalar(1, 2, 3)};
    }

    void decode(Bytes frame, cv::Mat& out) { decode(std::move(frame), out.cols, out.rows, out); }

    void decode(Bytes frame, int width, int height, cv::Mat& out) {
        do_excute_image(frame.data(), static_cast<int>(frame.size()), width, height, out, spare_);
    }

    cv::Mat decoded(const Bytes& frame, int width, int height) {
        cv::Mat out = untouched(width, height);
        decode(frame, out);
        return out;
    }

  private:
    cv::Mat spare_;
};

inline bool same(const cv::Mat& left, const cv::Mat& right) {
    return left.size() == right.size() && left.type() == right.type() &&
           cv::norm(left, right, cv::NORM_INF) == 0;
}

} // namespace doccam::test

#include "read_picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace doccam::test {
namespace {

ReadCode copyOf(const DoccamCode& code) {
    ReadCode copy{code.symbology,
                  {code.text, code.text_size},
                  {reinterpret_cast<const char*>(code.bytes), code.bytes_size},
                  code.addon};
    EXPECT_EQ(code.text[code.text_size], '\0');
    for (std::size_t i = 0; i < 4; ++i) {
        copy.corners[i] = {code.corners[i][0], code.corners[i][1]};
    }
    return copy;
}

} // namespace

void PrintTo(const ReadCode& code, std::ostream* out) {
    *out << doccam_symbology_name(code.symbology) << " \"" << code.text << '"';
}

PictureRead readPicture(const cv::Mat& picture, unsigned symbologies, double seconds) {
    const DoccamImage image{picture.data, picture.cols, picture.rows, picture.step,
                            picture.channels() == 1 ? DOCCAM_PIXELS_GREY : DOCCAM_PIXELS_BGR};
    DoccamCodes* result = nullptr;
    const int count = doccam_read_codes(&image, symbologies, seconds, &result);
    EXPECT_GE(count, 0);
    PictureRead read;
    if (result != nullptr) {
        EXPECT_EQ(static_cast<std::size_t>(count), result->count);
        std::transform(result->codes, result->codes + result->count, std::back_inserter(read.codes),
                       copyOf);
        read.complete = result->complete != 0;
    }
    doccam_codes_free(result);
    return read;
}

std::vector<std::string> readTexts(const cv::Mat& picture, unsigned symbologies, double seconds) {
    std::vector<std::string> texts;
    for (const ReadCode& code : readPicture(picture, symbologies, seconds).codes) {
        const std::string addon = code.addon.empty() ? "" : " + " + code.addon;
        texts.push_back(doccam_symbology_name(code.symbology) + (": " + code.text) + addon);
    }
    std::sort(texts.begin(), texts.end());
    return texts;
}

} // namespace doccam::test

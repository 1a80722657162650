#include "camera/cameras.h"

#include <gtest/gtest.h>

namespace {

using namespace doccam::host;

TEST(SizeText, IsReadAndWrittenAsWidthByHeight) {
    EXPECT_EQ(parseSize("1280x960"), (Size{1280, 960}));
    EXPECT_EQ(textOf({1280, 960}), "1280x960");
}

TEST(SizeText, IsRejectedWhenMalformed) {
    for (const char* text : {"", "x", "1280", "1280x", "x960", "0x960", "-1x960", "1280X960",
                             "1280x960 ", " 1280x960", "1280x960x3", "100000x1", "1e3x960"}) {
        EXPECT_EQ(parseSize(text), std::nullopt) << text;
    }
}

} // namespace

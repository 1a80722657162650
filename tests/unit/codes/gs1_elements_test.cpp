// Strings of GS1 elements.
#include "codes/gs1_elements.h"

#include <gtest/gtest.h>

namespace doccam::codes {
namespace {

TEST(Gs1Elements, HaveSeparatorsBehindValuesOfVariableLength) {
    EXPECT_EQ(elementStringOf("(01)09501101530003(10)AB-12(21)7"), "010950110153000310AB-12\x1d"
                                                                   "217");
    EXPECT_EQ(elementStringOf("(01)09501101530003(3103)000189"), "01095011015300033103000189");
    EXPECT_EQ(elementStringOf("(10)A(x)(21)7"), "10A(x)\x1d"
                                                "217");
}

TEST(Gs1Elements, AreNotMadeOfOtherTexts) {
    for (const char* text : {"", "01", "(01)123", "(01)0950110153000A", "(05)1", "(10)", "(10)A(",
                             "(310)123456", "x(10)A"}) {
        const auto elements = elementStringOf(text);
        EXPECT_TRUE(!elements || *elements == "10A(") << text;
    }
}

TEST(Gs1Elements, AreKnownByTheirIdentifiers) {
    EXPECT_TRUE(isElementString("0109501101530003"));
    EXPECT_TRUE(isElementString("010950110153000310AB-12\x1d"
                                "217"));
    EXPECT_TRUE(isElementString("01095011015300033103000189"));
    EXPECT_FALSE(isElementString(""));
    EXPECT_FALSE(isElementString("010950110153000"));
    EXPECT_FALSE(isElementString("010950110153000310AB\x1d"));
    EXPECT_FALSE(isElementString("010950110153000310AB\x1d"
                                 "2U7T4A"));
    EXPECT_FALSE(isElementString("010950110153000310AB\x1d"
                                 "2Y7\x1d"
                                 "2"));
    EXPECT_FALSE(isElementString("0109501101530003310300018"));
}

} // namespace
} // namespace doccam::codes

#include "codes/text_encoding.h"

#include <gtest/gtest.h>

namespace doccam::codes {
namespace {

TEST(TextEncoding, KnowsUtf8) {
    for (const char* text : {"", "plain", "Stra\u00dfe", "\u65e5\u672c", "\U0001f600"}) {
        EXPECT_TRUE(isUtf8(text)) << text;
    }
    for (const char* bytes : {"\xc0\xaf", "\xe0\x80\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80",
                              "\xff", "\xc3", "a\xe6\x97", "\x80"}) {
        EXPECT_FALSE(isUtf8(bytes));
    }
}

TEST(TextEncoding, KeepsUtf8AndZeroBytes) {
    const std::string text("Stra\u00dfe\0end", 11);
    EXPECT_EQ(asUtf8(text), text);
}

TEST(TextEncoding, TakesJapanesePairsForShiftJis) {
    EXPECT_EQ(asUtf8("\x93\xfa\x96{\x8c\xea"), "\u65e5\u672c\u8a9e");
}

TEST(TextEncoding, TakesOtherBytesForLatin1) {
    EXPECT_EQ(asUtf8("K\xe4se"), "K\u00e4se");
    EXPECT_EQ(asUtf8("\x01\xff\xfe\x80"), "\x01\u00ff\u00fe\u0080");
}

} // namespace
} // namespace doccam::codes

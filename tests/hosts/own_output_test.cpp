#include "host/own_output.h"

#include <gtest/gtest.h>

namespace {

TEST(HarmlessText, KeepsLettersOfAllLanguagesAndLines) {
    EXPECT_EQ(doccam::host::harmless("Stra\xC3\x9F"
                                     "e\t1\n2"),
              "Stra\xC3\x9F"
              "e\t1\n2");
}

TEST(HarmlessText, ShowsWhatWouldSteerATerminal) {
    EXPECT_EQ(doccam::host::harmless("\x1B[2J\x07\x7F"), "\\x1b[2J\\x07\\x7f");
}

} // namespace

#include "base/files/harmless_text.h"
#include "host/own_output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

namespace {

TEST(HarmlessText, KeepsLettersOfAllLanguagesAndLines) {
    EXPECT_EQ(doccam::harmlessText("Stra\xC3\x9F"
                                   "e\t1\n2",
                                   "\n\t"),
              "Stra\xC3\x9F"
              "e\t1\n2");
}

TEST(HarmlessText, EscapesTerminalControlSequences) {
    EXPECT_EQ(doccam::harmlessText("\x1B[2J\x07\x7F"), "\\x1b[2J\\x07\\x7f");
}

TEST(HarmlessText, EscapesTheSecondSetOfControlCharacters) {
    EXPECT_EQ(doccam::harmlessText("\xC2\x9B"
                                   "2J\xC2\xA0"),
              "\\xc2\\x9b2J\xC2\xA0");
}

TEST(HarmlessText, EscapesInvalidUtf8) {
    EXPECT_EQ(doccam::harmlessText("a\x9B\xE2\x82"), "a\\x9b\\xe2\\x82");
}

TEST(Complaint, IsOneLineWhateverItQuotes) {
    testing::internal::CaptureStderr();
    doccam::host::complain("a\nb\x1B[2J.");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "doccam: a b\\x1b[2J.\n");
}

TEST(StandardStreams, AreHeldByDevNullWhereTheyAreClosed) {
    EXPECT_EXIT(
        {
            close(STDIN_FILENO);
            close(STDOUT_FILENO);
            doccam::host::holdStandardStreams();
            const int next = open("/dev/null", O_RDONLY | O_CLOEXEC);
            const bool held = write(STDOUT_FILENO, "x", 1) == 1;
            std::_Exit(held && next > STDERR_FILENO ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace

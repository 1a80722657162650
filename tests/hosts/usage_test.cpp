#include "host_program.h"

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;

using Usage = HostProgramTest;

TEST_F(Usage, HelpNamesEachCommandAndEachExitCode) {
    const Outcome outcome = run("--help");
    EXPECT_EQ(outcome.status, kDone);
    for (const char* word :
         {"list", "sizes", "capture", "scan", "read", "controls", "focus", "pdf", "clean", "doctor",
          "serve", "--virtual", "5 file could not be written"}) {
        EXPECT_THAT(outcome.out, HasSubstr(word));
    }
}

TEST_F(Usage, EachCommandsHelpHasExamples) {
    for (const std::string command : {"list", "sizes", "capture", "scan", "read", "controls",
                                      "focus", "pdf", "clean", "doctor", "serve"}) {
        const Outcome outcome = run(command + " --help");
        EXPECT_EQ(outcome.status, kDone);
        EXPECT_THAT(outcome.out, HasSubstr("Examples:\n  ")) << command;
        EXPECT_THAT(outcome.out, HasSubstr("doccam " + command)) << command;
    }
}

TEST_F(Usage, VersionIsPrinted) {
    EXPECT_THAT(run("--version").out, ContainsRegex("^doccam [0-9]+\\.[0-9]+\\.[0-9]+\n$"));
}

TEST_F(Usage, AMalformedCommandLineIsReportedInOneSentence) {
    for (const std::string arguments :
         {"", "bogus", "list extra", "--camera 9 list", "--camera '' list", "capture",
          "capture --size 12 a.jpg", "capture --colour red a.jpg", "capture --rotate 45 a.jpg",
          "capture --quality 101 a.jpg", "scan a.jpg", "scan", "scan --pages 0 a.pdf",
          "controls brightness=much", "controls sharpness", "pdf a.jpg b.jpg", "clean",
          "clean --in-place a.jpg", "read --kind text a.jpg"}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, kUsage) << arguments;
        EXPECT_THAT(outcome.out, IsEmpty()) << arguments;
        EXPECT_THAT(outcome.err, isOneSentence()) << arguments;
    }
}

TEST_F(Usage, AnUnknownCommandIsNamed) {
    for (const std::string arguments : {"bogus --json", "--camera 1 bogus"}) {
        EXPECT_THAT(run(arguments).err, HasSubstr("\"bogus\"")) << arguments;
    }
}

TEST_F(Usage, ResultsThatCannotBeWrittenAreAFailure) {
    for (const std::string arguments : {"--help", "--version"}) {
        EXPECT_EQ(run(arguments + " >/dev/full; exit $?").status, kFileFailed) << arguments;
    }
    drawSheet("sheet.png");
    EXPECT_EQ(run("read sheet.png >/dev/full; exit $?").status, kFileFailed);
}

TEST_F(Usage, APhotoThatCannotBeReadIsNamed) {
    const Outcome outcome = run("--virtual=missing.jpg list");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_THAT(outcome.err, AllOf(isOneSentence(), HasSubstr("missing.jpg")));
}

} // namespace

#include "host_program.h"

#include <filesystem>
#include <fstream>
#include <map>

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class Configuration : public HostProgramTest {
  protected:
    void write(const std::string& text, const std::string& name = "doccam.toml") const {
        std::ofstream(file(name)) << text;
    }

    // The file that is read without --config.
    void writeUsual(const std::string& text) const {
        std::filesystem::create_directories(file("../home/.config/doccam"));
        write(text, "../home/.config/doccam/config.toml");
    }
};

TEST_F(Configuration, GivesOptionsTheirDefaults) {
    drawSheet("a.jpg");
    writeUsual("json = true\n[clean]\ncolour = \"bw\"\nquality = 70\n");
    const Outcome outcome = run("clean a.jpg");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_EQ(outcome.json()[0]["file"], "a-clean.png");
    const Outcome without = run("--no-config clean a.jpg");
    EXPECT_THAT(without.out, HasSubstr("a-clean.jpg  "));
}

TEST_F(Configuration, YieldsToProfileAndCommandLine) {
    drawSheet("a.jpg");
    write("[clean]\ncolour = \"bw\"\ncrop = true\n"
          "[profile.letters]\njson = true\n[profile.letters.clean]\ncolour = \"gray\"\n");
    const Outcome profile = run("clean a.jpg --config doccam.toml --profile letters");
    ASSERT_EQ(profile.status, kDone) << profile.err;
    EXPECT_EQ(profile.json()[0]["file"], "a-clean.jpg");
    EXPECT_EQ(profile.json()[0]["sheet"].size(), 4U);
    const Outcome line = run("clean a.jpg --force --config doccam.toml --profile=letters "
                             "--json=false --colour bw --crop=false");
    EXPECT_THAT(line.out, HasSubstr("a-clean.png  1280x960"));
}

TEST_F(Configuration, KeepsAnOptionOfAllCommandsToOne) {
    write("[list]\njson = true\n");
    EXPECT_THAT(run("--virtual list --config doccam.toml").out, StartsWith("["));
    EXPECT_THAT(run("--virtual sizes --config doccam.toml").out, StartsWith("mjpeg"));
}

TEST_F(Configuration, IsRefusedWithFileAndLine) {
    const std::map<std::string, std::string> sentences{
        {"\nfoo = 1", "line 2: there is no option \"foo\""},
        {"[scan]\nkind = \"qr\"", "line 2: there is no option \"kind\" of scan"},
        {"[scna]\nauto = true", "there is no command \"scna\""},
        {"json = 1", "takes true or false"},
        {"json = \"true\"", "takes true or false"},
        {"[scan]\nauto = \"yes\"", "takes true or false"},
        {"[scan]\nquality = \"70\"", "takes a number"},
        {"[scan]\nquality = 500", "\"500\" is no number from 0 to 100"},
        {"[scan]\nlook = [\"paper\"]", "not an array"},
        {"[scan]\nlook = true", "takes no true or false"},
        {"[capture]\ncolour = \"red\"", "\"red\" is none of"},
        {"[scan.more]\nauto = true", "is a table"},
        {"json = true\njson = false", "line 2: "},
        {"json = ", "line 1: "},
        {"camera = 1979-05-27", "is no text"},
        {"[profile.a.scan]\nfoo = 1", "there is no option \"foo\" of scan"}};
    for (const auto& [text, sentence] : sentences) {
        write(text);
        const Outcome outcome = run("list --config doccam.toml");
        EXPECT_EQ(outcome.status, kUsage) << text;
        EXPECT_THAT(outcome.err,
                    AllOf(isOneSentence(), HasSubstr("doccam.toml"), HasSubstr(sentence)))
            << text;
    }
}

TEST_F(Configuration, ReplacesRemovesAndUnlocksNothing) {
    for (const std::string text :
         {"no-confinement = true", "[clean]\nforce = true", "[clean]\nin-place = true",
          "[spool]\nall = true", "[spool]\nas = \"a.pdf\"", "[doctor]\nadd = \"0c45:6366\"",
          "[scan]\nresume = true", "config = \"b.toml\""}) {
        write(text);
        const Outcome outcome = run("list --config doccam.toml");
        EXPECT_EQ(outcome.status, kUsage) << text;
        EXPECT_THAT(outcome.err, AllOf(isOneSentence(), HasSubstr("command line alone"))) << text;
    }
    write("[scan]\nOUT = \"a.pdf\"");
    EXPECT_EQ(run("list --config doccam.toml").status, kUsage);
}

TEST_F(Configuration, ThatIsMissingIsNamed) {
    EXPECT_EQ(run("list --config doccam.toml").err, "doccam: There is no file doccam.toml.\n");
    EXPECT_EQ(run("list --config .").err, "doccam: . is a folder; name a file in it.\n");
    EXPECT_THAT(run("list --profile a").err, HasSubstr(".config/doccam/config.toml"));
    write("[profile.b]\n[profile.c]\n");
    const Outcome outcome = run("list --config doccam.toml --profile a");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_THAT(outcome.err, AllOf(isOneSentence(), HasSubstr("it has b, c")));
    EXPECT_EQ(run("list --no-config --profile a").status, kUsage);
}

TEST_F(Configuration, LeavesHelpAlone) {
    writeUsual("nonsense");
    EXPECT_EQ(run("scan --help").status, kDone);
    EXPECT_EQ(run("list").status, kUsage);
}

} // namespace

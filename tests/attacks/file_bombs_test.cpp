// The cost of small malicious picture files.
#include "bombs.h"
#include "measured_run.h"

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <sys/stat.h>

#include <cctype>
#include <string>
#include <vector>

namespace {

using namespace doccam::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Le;
using testing::MatchesRegex;

constexpr long kMegabytes = 1000;

using Words = std::vector<std::string>;

std::string nameOf(const testing::TestParamInfo<Bomb>& info) {
    std::string name;
    for (const char letter : info.param.name) {
        name += std::isalnum(static_cast<unsigned char>(letter)) != 0 ? letter : '_';
    }
    return name;
}

class FileBomb : public testing::TestWithParam<Bomb> {
  protected:
    MeasuredRun program_;
};

TEST_P(FileBomb, IsRefusedBeforeADecoderSeesIt) {
    constexpr long kProgramAlone = 150;
    program_.write(GetParam().name, GetParam().bytes);
    for (const Words& words : commandsOn(GetParam().name)) {
        const Cost cost = program_.run(words);
        EXPECT_EQ(cost.status, kUsage) << words.front();
        EXPECT_THAT(cost.err, MatchesRegex("doccam: [^\n]*[.]\n")) << words.front();
        EXPECT_THAT(cost.err, HasSubstr(GetParam().name));
        EXPECT_THAT(cost.megabytes, Le(kProgramAlone)) << words.front();
        EXPECT_THAT(program_.files(), ElementsAre(GetParam().name));
    }
}

INSTANTIATE_TEST_SUITE_P(OfEachType, FileBomb, testing::ValuesIn(bombs()), nameOf);

class LargePicture : public FileBomb {};

// The result does not matter here.
TEST_P(LargePicture, CostsNoMoreThanAGigabyte) {
    program_.write(GetParam().name, GetParam().bytes);
    for (const Words& words : commandsOn(GetParam().name)) {
        const Cost cost = program_.run(words, "DOCCAM_READ_SECONDS=1");
        EXPECT_NE(cost.status, -1) << words.front();
        EXPECT_THAT(cost.megabytes, Le(kMegabytes)) << words.front();
    }
}

INSTANTIATE_TEST_SUITE_P(WithinTheLimits, LargePicture, testing::ValuesIn(bombsWithinLimits()),
                         nameOf);

TEST(FileLimits, AreSetByTheEnvironment) {
    const MeasuredRun program;
    program.write("a.png", claimingPng({.width = 2000, .height = 1000}));
    const Words words{"clean", "a.png"};
    const Cost refused = program.run(words, "DOCCAM_MAX_MEGAPIXELS=1");
    EXPECT_EQ(refused.status, kUsage);
    EXPECT_THAT(refused.err, HasSubstr("DOCCAM_MAX_MEGAPIXELS"));
    EXPECT_EQ(program.run(words, "DOCCAM_MAX_MEGAPIXELS=many").status, kUsage);
    EXPECT_EQ(program.run(words, "DOCCAM_MAX_MEGAPIXELS=2").status, kDone);
}

// Files for GDAL or GDCM, or without a known header.
TEST(FileTypes, ThatAreNotLookedAtAreNotDecodedEither) {
    for (const std::string name : {"a.hdr", "a.jp2", "a.pam", "a.pfm", "a.ras"}) {
        const MeasuredRun program;
        const bool real = name == "a.hdr" || name == "a.pfm";
        const cv::Mat picture(256, 256, real ? CV_32FC3 : CV_8UC3, cv::Scalar::all(1));
        ASSERT_TRUE(cv::imwrite(program.file(name), picture)) << name;
        EXPECT_EQ(program.run({"pdf", "all.pdf", name}).status, kUsage) << name;
    }
}

// GDCM, with which OpenCV reads them, aborts the process on a damaged one.
TEST(FileTypes, OfMedicalScansAreRefused) {
    const MeasuredRun program;
    program.write("scan.png", std::string(128, '\0') + "DICM" + std::string(4000, '\x55'));
    for (const std::string command : {"read", "clean"}) {
        EXPECT_EQ(program.run({command, "scan.png"}).status, kUsage) << command;
    }
    EXPECT_EQ(program.run({"pdf", "all.pdf", "scan.png"}).status, kUsage);
}

// Opening it would wait for its writer.
TEST(FileTypes, OfPipesAreRefusedAtOnce) {
    const MeasuredRun program;
    ASSERT_EQ(mkfifo(program.file("pipe.png").c_str(), 0600), 0);
    for (const auto& words : commandsOn("pipe.png")) {
        EXPECT_EQ(program.run(words).status, kUsage) << words.front();
    }
}

// The virtual cameras decode without bounds what has been decoded within them.
TEST(FileTypes, OfAPhotoForVirtualCamerasAreDecodedApartFirst) {
    const MeasuredRun program;
    const std::string png = claimingPng({.width = 100, .height = 100});
    program.write("a.png", png.substr(0, png.size() - 20));
    const Cost cost = program.run({"--virtual=a.png", "list"});
    EXPECT_EQ(cost.status, kUsage);
    EXPECT_THAT(cost.err, MatchesRegex("doccam: [^\n]*a.png[^\n]*[.]\n"));
}

// All of the picture looks like codes.
TEST(CodeSearch, EndsWithItsTime) {
    const MeasuredRun program;
    cv::Mat noise(1500, 1500, CV_8UC1);
    cv::RNG(1).fill(noise, cv::RNG::UNIFORM, 0, 256);
    cv::Mat blocks;
    cv::repeat(noise > 127, 4, 4, blocks);
    cv::imwrite(program.file("a.png"), blocks);
    const Cost cost = program.run({"read", "a.png"}, "DOCCAM_READ_SECONDS=1");
    EXPECT_EQ(cost.status, kNothingFound);
    EXPECT_THAT(cost.err, HasSubstr("DOCCAM_READ_SECONDS"));
}

} // namespace

#include "host_program.h"

#include <opencv2/imgcodecs.hpp>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

using namespace doccam::test;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// Standard input and output in the place of files.
class Streams : public HostProgramTest {
  protected:
    std::string contentOf(const std::string& name) const {
        std::ifstream content(file(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(content), {}};
    }

    // A picture's bytes.
    std::string sheet(const std::string& name) const {
        drawSheet(name);
        return contentOf(name);
    }

    static cv::Mat decoded(const std::string& bytes) {
        return cv::imdecode(std::vector<char>(bytes.begin(), bytes.end()), cv::IMREAD_UNCHANGED);
    }
};

TEST_F(Streams, TakeAStillOfAnyType) {
    const Outcome jpeg = runWith(camera(), "capture - --type jpg");
    ASSERT_EQ(jpeg.status, kDone) << jpeg.err;
    EXPECT_THAT(jpeg.out, StartsWith("\xFF\xD8\xFF"));
    EXPECT_EQ(decoded(jpeg.out).size(), cv::Size(1280, 960));
    EXPECT_THAT(jpeg.err, IsEmpty());
    EXPECT_THAT(runWith(camera(), "capture - --type pdf").out, StartsWith("%PDF"));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Streams, BringPicturesToPdfCleanAndRead) {
    const std::string jpeg = sheet("a.jpg");
    const Outcome pdf = run("pdf - - a.jpg", jpeg);
    ASSERT_EQ(pdf.status, kDone) << pdf.err;
    EXPECT_THAT(pdf.out, StartsWith("%PDF"));
    const Outcome page = run("clean --crop -", jpeg);
    ASSERT_EQ(page.status, kDone) << page.err;
    EXPECT_THAT(page.out, StartsWith("\xFF\xD8\xFF"));
    EXPECT_LT(decoded(page.out).cols, 1280);
    EXPECT_THAT(run("clean --colour bw -", jpeg).out, StartsWith("\x89PNG"));
    EXPECT_THAT(run("clean -", sheet("b.png")).out, StartsWith("\x89PNG"));
    const Outcome codes = run("read - a.jpg --kind qr --json", jpeg);
    ASSERT_EQ(codes.status, kDone) << codes.err;
    EXPECT_EQ(codes.json()[0]["source"], "-");
    EXPECT_EQ(codes.json()[0]["text"], codes.json()[1]["text"]);
    EXPECT_THAT(files(), ElementsAre("a.jpg", "b.png"));
}

TEST_F(Streams, TakeAScan) {
    const Outcome outcome = runWith(camera(), "scan - --pages 2", "\n\n");
    ASSERT_EQ(outcome.status, kDone) << outcome.err;
    std::ofstream(file("a.pdf"), std::ios::binary) << outcome.out;
    EXPECT_EQ(std::system(("pdfinfo " + file("a.pdf") + " | grep -q 'Pages: *2$'").c_str()), 0);
    EXPECT_THAT(outcome.err,
                AllOf(HasSubstr("page 2 of 2 taken"), testing::Not(HasSubstr(".doccam"))));
}

TEST_F(Streams, AreNamedInSentences) {
    for (const std::string command : {"read -", "clean -", "clean --crop -", "pdf a.pdf -"}) {
        const Outcome outcome = run(command, "no picture");
        EXPECT_EQ(outcome.status, kUsage) << command;
        EXPECT_THAT(outcome.err,
                    AllOf(isOneSentence(), StartsWith("doccam: Standard input is no readable")))
            << command;
        EXPECT_THAT(run(command, "").err, HasSubstr("Standard input is empty")) << command;
    }
    const Outcome page = run("capture - --look paper --colour bw");
    EXPECT_THAT(page.err, AllOf(isOneSentence(), HasSubstr("and standard output is none")));
    EXPECT_THAT(run("scan - --pages 1 --no-spool", "q\n").err, testing::Not(HasSubstr(".doccam")));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Streams, AreBoundedAsFilesAre) {
    setenv("DOCCAM_MAX_MEGAPIXELS", "1", 1);
    const Outcome large = run("read -", std::string(9000000, 'x'));
    const Outcome picture = run("read -", sheet("a.jpg"));
    unsetenv("DOCCAM_MAX_MEGAPIXELS");
    EXPECT_EQ(large.status, kUsage);
    EXPECT_THAT(large.err, AllOf(isOneSentence(), HasSubstr("more than 8000000 bytes")));
    EXPECT_EQ(picture.status, kUsage);
    EXPECT_THAT(picture.err, AllOf(isOneSentence(), HasSubstr("Standard input has 2 megapixels")));
}

TEST_F(Streams, AreRefusedWhereTheyCannotBeMeant) {
    const std::string jpeg = sheet("a.jpg");
    for (const std::string arguments :
         {"read - -", "clean - a.jpg", "clean - --each", "clean - --into .", "clean - --json",
          "pdf - a.jpg --json", "pdf a.pdf - -", "capture - --json", "capture - b.jpg",
          "capture - --count 2", "capture b.jpg --type png", "scan - --json"}) {
        const Outcome outcome = run(arguments, jpeg);
        EXPECT_EQ(outcome.status, kUsage) << arguments;
        EXPECT_THAT(outcome.err, isOneSentence()) << arguments;
    }
    EXPECT_THAT(files(), ElementsAre("a.jpg"));
}

TEST_F(Streams, AreNotTerminals) {
    for (const std::string arguments : {"pdf - a.jpg", "read -"}) {
        // script runs it in a terminal of its own.
        const std::string command = "cd " + file(".") + " && script -qec '" DOCCAM_PROGRAM " " +
                                    arguments + "' /dev/null </dev/null | grep -q 'is a terminal'";
        EXPECT_EQ(std::system(command.c_str()), 0) << arguments;
    }
}

TEST_F(Streams, FailWithTheirReader) {
    drawSheet("a.jpg");
    EXPECT_EQ(run("pdf - a.jpg >/dev/full; exit $?").status, kFileFailed);
}

} // namespace

#include "host_program.h"
#include "unit/barcode/code_drawing.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <zint.h>

#include <csignal>
#include <fstream>
#include <sstream>

namespace {

using namespace doccam::test;
using testing::HasSubstr;
using testing::IsEmpty;

class Codes : public HostProgramTest {
  protected:
    // A page with the codes below one another.
    std::string drawCodes(const std::string& name, const std::vector<Code>& codes) const {
        cv::Mat page(300 * static_cast<int>(codes.size()), 800, CV_8UC1, cv::Scalar(255));
        for (std::size_t i = 0; i < codes.size(); ++i) {
            const cv::Mat code = drawCode(codes[i], 3);
            code.copyTo(page(cv::Rect({60, 300 * static_cast<int>(i) + 20}, code.size())));
        }
        cv::imwrite(file(name), page);
        return name;
    }

    std::vector<std::string> printedLines() const {
        std::istringstream text(printed());
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }
};

using Json = nlohmann::json;

TEST_F(Codes, AreReadFromAFile) {
    const Outcome outcome = run("read " + drawSheet("sheet.png"));
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_EQ(outcome.out, "qr: https://example.org/sheet/0042\nbar: DOC-0042-2026\n");
    EXPECT_THAT(outcome.err, IsEmpty());
}

TEST_F(Codes, OfOneKindAreReadFromSeveralFiles) {
    const Outcome outcome =
        run("read --kind bar " + drawSheet("a.png") + " " + drawSheet("b.png", 7));
    EXPECT_EQ(outcome.out, "a.png: bar: DOC-0042-2026\nb.png: bar: DOC-0049-2026\n");
}

TEST_F(Codes, AreReadFromTheCameraAsJson) {
    const Outcome outcome = runWith(camera(), "read --kind qr --json");
    EXPECT_EQ(outcome.status, kDone) << outcome.err;
    ASSERT_EQ(outcome.json().size(), 1U);
    const Json code = outcome.json()[0];
    EXPECT_EQ(code["source"], "camera 0");
    EXPECT_EQ(code["kind"], "qr");
    EXPECT_EQ(code["text"], "https://example.org/sheet/0042");
}

TEST_F(Codes, OfAPictureAreAllRead) {
    drawCodes("a.png", {qrCode("first"),
                        qrCode("second"),
                        code128("DOC 1"),
                        {BARCODE_DATAMATRIX, "Matrix 1", ""},
                        {BARCODE_PDF417, "PDF 417", ""},
                        {BARCODE_AZTEC, "Aztec code", ""}});
    const Outcome outcome = run("read a.png");
    EXPECT_EQ(outcome.status, kDone);
    EXPECT_EQ(outcome.out, "qr: first\nqr: second\nbar: DOC 1\nmatrix: Matrix 1\n"
                           "matrix: PDF 417\nmatrix: Aztec code\n");
    EXPECT_THAT(outcome.err, IsEmpty());
}

TEST_F(Codes, OfTheKindsThatAreNamedAreRead) {
    drawCodes("a.png", {qrCode("first"),
                        code128("DOC 1"),
                        {BARCODE_CODE39, "DOC 39", ""},
                        {BARCODE_DATAMATRIX, "Matrix 1", ""}});
    EXPECT_EQ(run("read --kind matrix a.png").out, "matrix: Matrix 1\n");
    EXPECT_EQ(run("read --kind bar,qr a.png").out, "qr: first\nbar: DOC 1\nbar: DOC 39\n");
    EXPECT_EQ(run("read --kind code-39,data-matrix a.png").out, "bar: DOC 39\nmatrix: Matrix 1\n");
    EXPECT_EQ(run("read --kind pdf417 a.png").status, kNothingFound);
    const Outcome wrong = run("read --kind qr,text a.png");
    EXPECT_EQ(wrong.status, kUsage);
    EXPECT_THAT(wrong.err, isOneSentence());
    EXPECT_THAT(wrong.err, HasSubstr("qr, bar, matrix, any, ean-13"));
}

TEST_F(Codes, HaveRowsWithBytesAddonAndPosition) {
    drawCodes("a.png", {{BARCODE_EANX, "978020137962+51234", ""}, qrCode("\xC3\xA4")});
    const Json rows = run("read --json a.png").json();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0]["source"], "a.png");
    EXPECT_EQ(rows[0]["kind"], "bar");
    EXPECT_EQ(rows[0]["symbology"], "ean-13");
    EXPECT_EQ(rows[0]["text"], "9780201379624");
    EXPECT_EQ(rows[0]["addon"], "51234");
    EXPECT_EQ(rows[1]["kind"], "qr");
    EXPECT_EQ(rows[1]["symbology"], "qr-code");
    EXPECT_EQ(rows[1]["text"], "\xC3\xA4");
    EXPECT_EQ(rows[1]["bytes"], "w6Q=");
    EXPECT_EQ(rows[1]["addon"], nullptr);
    ASSERT_EQ(rows[1]["position"].size(), 4U);
    EXPECT_NEAR(rows[1]["position"][0][0], 60 + 8 * 3, 3); // the quiet zone has eight modules
    EXPECT_NEAR(rows[1]["position"][0][1], 320 + 8 * 3, 3);
}

TEST_F(Codes, OnASheetSeenAtAnAngleAreRead) {
    cv::Mat sheet(1400, 1000, CV_8UC1, cv::Scalar(240));
    const cv::Mat code = drawCode({BARCODE_DATAMATRIX, "ON A SHEET 12345", ""}, 4);
    code.copyTo(sheet(cv::Rect({500 - code.cols / 2, 350 - code.rows / 2}, code.size())));
    const cv::Mat view = cv::getPerspectiveTransform(
        std::vector<cv::Point2f>{{0, 0}, {1000, 0}, {1000, 1400}, {0, 1400}},
        std::vector<cv::Point2f>{{380, 460}, {1220, 460}, {1500, 1150}, {100, 1150}});
    cv::Mat picture;
    cv::warpPerspective(sheet, picture, view, {1600, 1200}, cv::INTER_AREA, cv::BORDER_CONSTANT,
                        cv::Scalar(50));
    cv::GaussianBlur(picture, picture, {}, 0.7);
    cv::imwrite(file("a.png"), picture);
    EXPECT_EQ(run("read a.png").out, "matrix: ON A SHEET 12345\n");
}

// Sheets come with growing numbers; each says what it is for every frame that it lies there.
TEST_F(Codes, AreWatchedForUntilCtrlC) {
    RunningProgram program = start(camera(R"("scene": {"sheetFrames": 60})"),
                                   {"read", "--watch", "--kind", "qr", "--verbose"});
    while (printedLines().size() < 3) {
        ASSERT_TRUE(program.says("codes."));
    }
    program.signalGroup(SIGINT);
    EXPECT_EQ(program.finish(), kDone);
    const std::vector<std::string> lines = printedLines();
    EXPECT_EQ(lines.front().rfind("qr: https://example.org/sheet/00", 0), 0U) << lines.front();
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end(), std::less_equal<>())) << printed();
}

TEST_F(Codes, WatchedForAreAnObjectPerLine) {
    RunningProgram program = start(camera(), {"read", "--watch", "--json", "--verbose"});
    while (printedLines().size() < 2) {
        ASSERT_TRUE(program.says("codes."));
    }
    ASSERT_TRUE(program.says("codes.")); // they are still there
    program.signal(SIGTERM);
    EXPECT_EQ(program.finish(), kDone);
    ASSERT_EQ(printedLines().size(), 2U);
    for (const std::string& line : printedLines()) {
        EXPECT_EQ(Json::parse(line)["source"], "camera 0");
    }
}

TEST_F(Codes, AreNotWatchedForInFiles) {
    drawSheet("a.png");
    for (const std::string words : {"read --watch a.png", "read --watch --wait 3"}) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, kUsage);
        EXPECT_THAT(outcome.err, isOneSentence());
    }
}

TEST_F(Codes, AreReportedMissing) {
    const Outcome live =
        runWith(camera(R"("scene": {"centreX": 9, "noise": 0})"), "read --wait 0 --json");
    EXPECT_EQ(live.status, kNothingFound);
    EXPECT_EQ(live.json(), Json::array());
    EXPECT_THAT(live.err, isOneSentence());
}

TEST_F(Codes, AreNotReadFromAnUnpluggedCamera) {
    const Outcome outcome = runWith(
        camera(R"("scene": {"centreX": 9, "noise": 0}, "faults": [{"fault": "unplug", "at": 4}])"),
        "read --wait 3600 --json");
    EXPECT_EQ(outcome.status, kCameraFailed);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_EQ(outcome.json(), Json::array());
}

TEST_F(Codes, OfTheFilesBeforeAnUnreadableOneArePrinted) {
    const Outcome outcome = run("read --kind qr --json " + drawSheet("sheet.png") + " missing.png");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_EQ(outcome.json().size(), 1U);
}

TEST_F(Codes, AreNotSoughtInAFileThatIsNoPicture) {
    std::ofstream(file("text.png")) << "no picture";
    for (const std::string name : {"text.png", "missing.png"}) {
        const Outcome outcome = run("read " + name);
        EXPECT_EQ(outcome.status, kUsage);
        EXPECT_THAT(outcome.err, isOneSentence());
        EXPECT_THAT(outcome.err, HasSubstr(name));
    }
}

} // namespace

// PDF files from queued pictures, in one call and step by step.
#include "pdf_file.h"
#include "png_maker.h"
#include "state/library_state.h"
#include "support/printed_text.h"
#include "support/refused_writing.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using doccam::state;
using namespace doccam::test;
using Sizes = std::vector<std::string>;

class Pdf : public testing::Test {
  protected:
    void TearDown() override {
        state().documents.pdf_filelist.clear();
        state().documents.img_filelist.clear();
        EXPECT_EQ(pdf_end(), 0);
    }

    std::string png(const std::string& name, int width, int height) {
        writeText(scratch_.file(name), makeRgbPng(width, height));
        return scratch_.file(name);
    }

    std::string jpeg(const std::string& name, int width, int height) {
        std::string path = scratch_.file(name);
        SaveImage(path.data(), cv::Mat(height, width, CV_8UC3, cv::Scalar::all(99)));
        return path;
    }

    static void queue(const std::vector<std::string>& files) {
        for (const std::string& file : files) {
            EXPECT_EQ(AddImageFileToPDF(file.c_str()), 0) << file;
        }
    }

    ScratchFolder scratch_;
    std::string out_ = scratch_.file("out.pdf");
};

TEST_F(Pdf, ReturnsMinusOneAndWritesNothingForAnEmptyQueue) {
    EXPECT_EQ(CombineToPDF(out_.c_str(), true), -1);
    EXPECT_FALSE(fs::exists(out_));
}

TEST_F(Pdf, HasAPageForEachQueuedFileInOrder) {
    const std::string a = jpeg("a.jpg", 40, 30);
    const std::string b = png("b.png", 20, 50);
    queue({a, b, a});
    EXPECT_EQ(CombineToPDF(out_.c_str(), false), 0);
    EXPECT_EQ(pageSizes(out_), (Sizes{"40x30", "20x50", "40x30"}));
    EXPECT_EQ(pictureKinds(out_), (Sizes{"rgb 3 8 jpeg", "rgb 3 8 image", "rgb 3 8 jpeg"}));
    EXPECT_EQ(extractPicture(out_, 1).at(19, 49), (Pixel{200, 100, 50}));
}

TEST_F(Pdf, GivesAThousandPixelsAThousandPoints) {
    queue({jpeg("a.jpg", 1000, 500)});
    EXPECT_EQ(CombineToPDF(out_.c_str(), false), 0);
    EXPECT_EQ(pageSizes(out_), Sizes{"1000x500"});
}

TEST_F(Pdf, FillsThePageWithThePicture) {
    queue({png("a.png", 40, 30)});
    EXPECT_EQ(CombineToPDF(out_.c_str(), false), 0);
    const Decoded page = drawPage(out_);
    ASSERT_EQ(page.width, 40);
    ASSERT_EQ(page.height, 30);
    for (const auto& [x, y] : {std::pair{0, 0}, {39, 0}, {0, 29}, {39, 29}, {20, 15}}) {
        EXPECT_EQ(page.at(x, y), (Pixel{200, 100, 50})) << x << ' ' << y;
    }
}

TEST_F(Pdf, SkipsAFileThatHasGone) {
    const std::string gone = png("gone.png", 20, 50);
    queue({gone, jpeg("a.jpg", 40, 30)});
    fs::remove(gone);
    PrintedText printed;
    EXPECT_EQ(CombineToPDF(out_.c_str(), true), 0);
    EXPECT_EQ(printed.take(), "");
    EXPECT_EQ(pageSizes(out_), Sizes{"40x30"});
}

TEST_F(Pdf, JudgesByTheOutputWhenEveryFileHasGone) {
    queue({png("gone.png", 20, 50)});
    fs::remove(scratch_.file("gone.png"));
    EXPECT_EQ(CombineToPDF(out_.c_str(), false), 0);
    EXPECT_TRUE(readText(out_).starts_with("%PDF")) << "a document without pages is saved as well";
}

TEST_F(Pdf, DeletesTheQueuedFilesOnDemand) {
    const std::string a = jpeg("a.jpg", 40, 30);
    const std::string b = png("b.png", 20, 50);
    queue({a, b, a});
    EXPECT_EQ(CombineToPDF(out_.c_str(), true), 0);
    EXPECT_FALSE(fs::exists(a));
    EXPECT_FALSE(fs::exists(b));
    EXPECT_TRUE(state().documents.pdf_filelist.empty());
    EXPECT_EQ(CombineToPDF(out_.c_str(), true), -1);
}

TEST_F(Pdf, KeepsTheQueuedFilesOtherwise) {
    const std::string a = jpeg("a.jpg", 40, 30);
    queue({a});
    EXPECT_EQ(CombineToPDF(out_.c_str(), false), 0);
    EXPECT_TRUE(fs::exists(a));
    EXPECT_TRUE(state().documents.pdf_filelist.empty());
}

TEST_F(Pdf, ReturnsMinusTwoAndEmptiesTheQueueWhenNothingIsWritten) {
    const std::string a = jpeg("a.jpg", 40, 30);
    queue({a});
    PrintedText printed;
    EXPECT_EQ(CombineToPDF(scratch_.file("missing/out.pdf").c_str(), true), -2);
    EXPECT_EQ(printed.take(), "ERROR: error_no=1017, detail_no=2\n");
    EXPECT_TRUE(fs::exists(a));
    EXPECT_TRUE(state().documents.pdf_filelist.empty());
}

TEST_F(Pdf, LosesNoSourceToAnOlderFileAfterARefusedPage) {
    const std::string a = jpeg("a.jpg", 40, 30);
    const std::string bad = scratch_.file("bad.jpg");
    writeText(bad, "no picture");
    writeText(out_, "old");
    queue({a, bad});
    PrintedText printed;
    EXPECT_EQ(CombineToPDF(out_.c_str(), true), -2);
    EXPECT_EQ(printed.take(), "ERROR: error_no=1031, detail_no=0\n");
    EXPECT_EQ(readText(out_), "old");
    EXPECT_TRUE(fs::exists(a));
    EXPECT_TRUE(fs::exists(bad));
    EXPECT_TRUE(state().documents.pdf_filelist.empty());
}

TEST_F(Pdf, LosesNoSourceToAnOlderFileOnAFullDisk) {
    const std::string a = png("a.png", 100, 100);
    writeText(out_, "old");
    queue({a});
    const PrintedText printed;
    {
        const FullDisk full(100);
        EXPECT_EQ(CombineToPDF(out_.c_str(), true), -2);
    }
    EXPECT_EQ(readText(out_), "old");
    EXPECT_TRUE(fs::exists(a));
}

TEST_F(Pdf, SkipsFilesOfOtherTypes) {
    const std::string other = scratch_.file("a.txt");
    writeText(other, "text");
    const std::string capitals = png("A.PNG", 20, 50);
    const std::string brief = scratch_.file("g");
    writeText(brief, "short");
    queue({other, jpeg("a.jpg", 40, 30), capitals, brief});
    PrintedText printed;
    EXPECT_EQ(CombineToPDF(out_.c_str(), false), 0);
    EXPECT_EQ(printed.take(), "");
    EXPECT_EQ(pageSizes(out_), Sizes{"40x30"});
}

TEST_F(Pdf, SurvivesAPathShorterThanAnyExtension) {
    EXPECT_EQ(pdf_start(out_.c_str()), 0);
    for (const char* path : {"", "g", "pg"}) {
        EXPECT_EQ(pdf_addPage(path), 0);
    }
    EXPECT_EQ(pdf_addPage(jpeg("a.jpg", 40, 30).c_str()), 0);
    EXPECT_EQ(pdf_end(), 0);
    EXPECT_EQ(pageSizes(out_), Sizes{"40x30"});
}

TEST_F(Pdf, LeavesTheQueuesAloneForAMissingFile) {
    const std::string missing = scratch_.file("missing.jpg");
    EXPECT_EQ(AddImageFileToPDF(missing.c_str()), -1);
    EXPECT_EQ(AddImagePath(missing.c_str()), -1);
    EXPECT_TRUE(state().documents.pdf_filelist.empty());
    EXPECT_TRUE(state().documents.img_filelist.empty());
}

TEST_F(Pdf, QueuesMergeFilesSeparately) {
    const std::string a = jpeg("a.jpg", 40, 30);
    EXPECT_EQ(AddImagePath(a.c_str()), 0);
    EXPECT_EQ(AddImagePath(a.c_str()), 0);
    EXPECT_EQ(state().documents.img_filelist, (std::vector<std::string>{a, a}));
    EXPECT_TRUE(state().documents.pdf_filelist.empty());
    EXPECT_EQ(CombineToPDF(out_.c_str(), true), -1);
    EXPECT_EQ(state().documents.img_filelist.size(), 2U);
}

TEST_F(Pdf, RefusesNullPaths) {
    EXPECT_EQ(AddImageFileToPDF(nullptr), -1);
    EXPECT_EQ(AddImagePath(nullptr), -1);
    queue({jpeg("a.jpg", 40, 30)});
    EXPECT_EQ(CombineToPDF(nullptr, true), -1);
    EXPECT_EQ(state().documents.pdf_filelist.size(), 1U);
    EXPECT_EQ(pdf_start(out_.c_str()), 0);
    EXPECT_EQ(pdf_start(nullptr), 0);
    EXPECT_EQ(pdf_addPage(nullptr), 0);
    EXPECT_EQ(pdf_end(), 0);
    EXPECT_TRUE(fs::exists(out_));
}

TEST_F(Pdf, TakesTheStepsOneByOne) {
    EXPECT_EQ(pdf_start(out_.c_str()), 0);
    EXPECT_NE(state().documents.pdf, nullptr);
    EXPECT_EQ(state().documents.outPdfPath, out_);
    EXPECT_EQ(pdf_addPage(jpeg("a.jpg", 40, 30).c_str()), 0);
    EXPECT_FALSE(fs::exists(out_));
    EXPECT_EQ(pdf_end(), 0);
    EXPECT_EQ(pageSizes(out_), Sizes{"40x30"});
}

TEST_F(Pdf, DoesNothingWithoutADocument) {
    PrintedText printed;
    EXPECT_EQ(pdf_addPage(jpeg("a.jpg", 40, 30).c_str()), 0);
    EXPECT_EQ(pdf_end(), 0);
    EXPECT_EQ(pdf_start(out_.c_str()), 0);
    EXPECT_EQ(pdf_addPage(jpeg("a.jpg", 40, 30).c_str()), 0);
    EXPECT_EQ(pdf_end(), 0);
    fs::remove(out_);
    EXPECT_EQ(pdf_end(), 0);
    EXPECT_FALSE(fs::exists(out_));
    EXPECT_EQ(printed.take(), "");
}

TEST_F(Pdf, AbandonsADocumentWhenANewOneIsStarted) {
    const std::string first = scratch_.file("first.pdf");
    pdf_start(first.c_str());
    pdf_addPage(jpeg("a.jpg", 40, 30).c_str());
    pdf_start(out_.c_str());
    pdf_addPage(png("b.png", 20, 50).c_str());
    pdf_end();
    EXPECT_FALSE(fs::exists(first));
    EXPECT_EQ(pageSizes(out_), Sizes{"20x50"});
}

TEST_F(Pdf, PrintsTheCodesOfAnError) {
    PrintedText printed;
    error_handler(0x1017, 0, nullptr);
    error_handler(0xAB, 4000000000UL, nullptr);
    EXPECT_EQ(printed.take(), "ERROR: error_no=1017, detail_no=0\n"
                              "ERROR: error_no=00AB, detail_no=4000000000\n");
}

TEST_F(Pdf, IsNotSavedAfterAnErrorAndStartsAfresh) {
    const std::string a = jpeg("a.jpg", 40, 30);
    PrintedText printed;
    pdf_start(out_.c_str());
    pdf_addPage(a.c_str());
    error_handler(0x1017, 0, nullptr);
    pdf_addPage(scratch_.file("missing.jpg").c_str());
    pdf_end();
    EXPECT_FALSE(fs::exists(out_));
    EXPECT_EQ(printed.take(), "ERROR: error_no=1017, detail_no=0\n");
    pdf_start(out_.c_str());
    pdf_addPage(a.c_str());
    pdf_end();
    EXPECT_EQ(pageSizes(out_), Sizes{"40x30"});
}

TEST_F(Pdf, IsAbsentOrAsBeforeWhenTheDiskIsFull) {
    const std::string a = png("a.png", 100, 100);
    pdf_start(out_.c_str());
    pdf_addPage(a.c_str());
    pdf_end();
    const std::string whole = readText(out_);
    const std::string old = scratch_.file("old.pdf");
    writeText(old, "old");
    // The last size lacks only the file's last byte, which is written at the close.
    for (const std::size_t room : {std::size_t{60}, std::size_t{100}, std::size_t{20000},
                                   whole.size() - 100, whole.size() - 2}) {
        for (const std::string& target : {scratch_.file("new.pdf"), old}) {
            PrintedText printed;
            {
                const FullDisk full(room);
                pdf_start(target.c_str());
                pdf_addPage(a.c_str());
                pdf_end();
            }
            EXPECT_TRUE(printed.take().starts_with("ERROR: error_no=1016, detail_no="))
                << room << ' ' << target;
        }
        EXPECT_EQ(readText(old), "old") << room;
        EXPECT_EQ(std::distance(fs::directory_iterator(scratch_.path()), {}), 3) << room;
    }
}

TEST_F(Pdf, CanBeWrittenThroughAPipe) {
    const std::string reader = "cat > '" + scratch_.file("copy.pdf") + "'";
    std::FILE* pipe = popen(reader.c_str(), "w");
    pdf_start(("/proc/self/fd/" + std::to_string(fileno(pipe))).c_str());
    pdf_addPage(jpeg("a.jpg", 40, 30).c_str());
    pdf_end();
    pclose(pipe);
    EXPECT_EQ(pageSizes(scratch_.file("copy.pdf")), Sizes{"40x30"});
}

} // namespace

// Words and the way up of pages, as the installed tesseract sees them.
#include "checked_pdf.h"
#include "documents/text/recognition.h"
#include "documents/writer/pdf_writer.h"
#include "scene/pages/contents.h"
#include "scene/pages/sheets.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace doccam::test {
namespace {

using host::Failure;
using host::PageForText;
using host::RecognizedPages;
using host::TextOptions;
using testing::ElementsAre;
using testing::IsEmpty;
using virtualcam::PrintedPage;

constexpr double kDpi = 300;
const cv::Size2d kSlip{105, 90}; // millimetres
constexpr char kDataFolder[] = "TESSDATA_PREFIX";

// A variable of the environment during a test.
class Setting {
  public:
    Setting(const char* name, const std::string& value)
      : name_(name) {
        if (const char* before = std::getenv(name)) {
            before_ = before;
        }
        setenv(name, value.c_str(), 1);
    }

    ~Setting() {
        if (before_) {
            setenv(name_, before_->c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }

    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

  private:
    const char* name_;
    std::optional<std::string> before_;
};

PrintedPage printedSlip() {
    cv::RNG random(5);
    return virtualcam::printLetter(kSlip, random);
}

PageForText asPage(const cv::Mat& picture) {
    return {[picture] { return picture; }, kDpi};
}

std::set<std::string> wordsOf(const std::string& pdf) {
    std::istringstream text(said("pdftotext " + pdf + " -"));
    return {std::istream_iterator<std::string>(text), {}};
}

// Of the printed words, 0 to 1.
double shareFound(const PrintedPage& print, const std::set<std::string>& words) {
    double found = 0;
    for (const virtualcam::PrintedWord& word : print.words) {
        found += words.contains(word.text) ? 1 : 0;
    }
    return found / static_cast<double>(print.words.size());
}

// Where poppler finds the word, in pixels of the printed page; the first if there are several.
cv::Point2d placeOf(const std::string& word, const std::string& pdf) {
    const std::string boxes = said("pdftotext -bbox " + pdf + " -");
    const std::size_t end = boxes.find(">" + word + "</word>");
    const std::size_t begin = boxes.rfind("<word", end);
    double left = 0;
    double top = 0;
    std::sscanf(boxes.c_str() + begin, "<word xMin=\"%lf\" yMin=\"%lf\"", &left, &top);
    return cv::Point2d(left, top) * (kDpi / 72);
}

std::string languageData(const std::string& language) {
    std::istringstream first(said("tesseract --list-langs"));
    std::string line;
    std::getline(first, line, '"');
    std::getline(first, line, '"');
    return line + language + ".traineddata";
}

class Recognition : public testing::Test {
  protected:
    // Unblocks the signals that Interrupt blocks, for the other tests.
    ~Recognition() override { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

    RecognizedPages recognized(const std::vector<PageForText>& pages, const TextOptions& options,
                               const std::string& folder = {}) const {
        return host::recognize(pages, options, folder.empty() ? folder_.path().string() : folder,
                               interrupt_);
    }

    const ScratchFolder folder_;

  private:
    static sigset_t ownMask() {
        sigset_t mask;
        pthread_sigmask(SIG_BLOCK, nullptr, &mask);
        return mask;
    }

    const sigset_t before_ = ownMask();
    const host::Interrupt interrupt_;
};

TEST_F(Recognition, LaysWordsWhereTheyAreShownOnAPageTurnedUpright) {
    const PrintedPage print = printedSlip();
    cv::Mat turned;
    cv::rotate(print.picture, turned, cv::ROTATE_90_COUNTERCLOCKWISE);
    const RecognizedPages found =
        recognized({asPage(turned)}, {.languages = "eng", .upright = true});
    ASSERT_THAT(found.complaints, IsEmpty());
    ASSERT_EQ(found.pages.at(0).quarterTurns, 1);

    const std::string pdf = folder_.file("out.pdf");
    cv::imwrite(folder_.file("page.png"), turned);
    host::writePdf({.pages = {{.file = folder_.file("page.png"),
                               .size = {kSlip.width, kSlip.height},
                               .quarterTurns = 1,
                               .text = found.pages[0].pdf}}},
                   pdf);
    EXPECT_TRUE(isSound(pdf));
    EXPECT_GE(shareFound(print, wordsOf(pdf)), 0.97);
    const virtualcam::PrintedWord& first = print.words.front();
    EXPECT_LT(cv::norm(placeOf(first.text, pdf) - cv::Point2d(first.box.tl())), kDpi / 10);
}

// A page of print takes 30 kB where its words are not compressed.
TEST_F(Recognition, AddsLittleToTheDocument) {
    const PrintedPage print = printedSlip();
    const RecognizedPages found = recognized({asPage(print.picture)}, {.languages = "eng"});
    const auto sizeWith = [&](const std::string& text) {
        const std::string pdf = folder_.file("out.pdf");
        host::writePdf({.pages = {{.pixels = print.picture,
                                   .size = {kSlip.width, kSlip.height},
                                   .text = text}}},
                       pdf);
        return std::filesystem::file_size(pdf);
    };
    const auto words = std::filesystem::file_size(found.pages.at(0).pdf);
    EXPECT_LE(sizeWith(found.pages[0].pdf) - sizeWith(""), words + 500);
}

TEST_F(Recognition, LeavesPhotographsAndBlankPagesAsTheyAre) {
    cv::RNG random(3);
    const cv::Mat photograph = virtualcam::drawPhotograph({1600, 1100}, random);
    const cv::Mat blank(1600, 1100, CV_8UC1, cv::Scalar(250));
    const RecognizedPages found =
        recognized({asPage(photograph), asPage(blank)}, {.languages = "eng", .upright = true});
    EXPECT_THAT(found.complaints, IsEmpty());
    EXPECT_EQ(found.pages.at(0).quarterTurns, 0);
    EXPECT_EQ(found.pages.at(1).quarterTurns, 0);
    EXPECT_EQ(found.pages.at(1).pdf, "");
}

TEST_F(Recognition, LeavesNothingButTheWordsInItsFolder) {
    recognized({asPage(printedSlip().picture)}, {.languages = "eng", .upright = true});
    std::vector<std::string> left;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
        left.push_back(entry.path().extension());
    }
    EXPECT_THAT(left, ElementsAre(".pdf"));
}

TEST_F(Recognition, NamesThePackageOfAMissingProgram) {
    const Setting setting("PATH", folder_.path());
    const std::vector<PageForText> pages(2);
    const RecognizedPages words = recognized(pages, {.languages = "eng"});
    EXPECT_THAT(words.complaints, ElementsAre("Words are not recognized without tesseract; install "
                                              "the package tesseract-ocr."));
    EXPECT_EQ(words.pages.size(), 2U);
    EXPECT_THAT(recognized(pages, {.languages = {}, .upright = true}).complaints,
                ElementsAre("Pages are not turned upright without tesseract; install the package "
                            "tesseract-ocr."));
}

TEST_F(Recognition, ReadsTheLanguagesThatAreThere) {
    const PrintedPage print = printedSlip();
    const RecognizedPages found = recognized({asPage(print.picture)}, {.languages = "zzz+eng"});
    EXPECT_THAT(found.complaints,
                ElementsAre("Words in the language zzz are not recognized; install the package "
                            "tesseract-ocr-zzz."));
    EXPECT_GE(shareFound(print, wordsOf(found.pages.at(0).pdf)), 0.97);
}

TEST_F(Recognition, NamesThePackageThatTurnsPagesUpright) {
    std::filesystem::create_symlink(languageData("eng"), folder_.file("eng.traineddata"));
    const Setting setting(kDataFolder, folder_.path());
    EXPECT_THAT(
        recognized(std::vector<PageForText>(1), {.languages = {}, .upright = true}).complaints,
        ElementsAre("Pages are not turned upright; install the package "
                    "tesseract-ocr-osd."));
}

TEST_F(Recognition, NamesThePageOnWhichTesseractFails) {
    std::ofstream(folder_.file("eng.traineddata")) << "no data of a language";
    const Setting setting(kDataFolder, folder_.path());
    PageForText page = asPage(printedSlip().picture);
    page.number = 7;
    const RecognizedPages found = recognized({page}, {.languages = "eng"});
    EXPECT_THAT(found.complaints, ElementsAre("The words of page 7 are not recognized, as "
                                              "tesseract fails."));
    EXPECT_EQ(found.pages.at(0).pdf, "");
}

TEST_F(Recognition, WorksInAFolderOfAnyName) {
    const std::string folder = folder_.file("-l 'x'; $(exit)\n\"%s\" \xff");
    std::filesystem::create_directory(folder);
    const PrintedPage print = printedSlip();
    const RecognizedPages found = recognized({asPage(print.picture)}, {.languages = "eng"}, folder);
    ASSERT_THAT(found.complaints, IsEmpty());
    std::filesystem::rename(found.pages.at(0).pdf, folder_.file("plain.pdf"));
    EXPECT_GE(shareFound(print, wordsOf(folder_.file("plain.pdf"))), 0.97);
}

TEST_F(Recognition, RethrowsWhyAPictureCannotBeRead) {
    const PageForText page{[]() -> cv::Mat { throw Failure(host::kFileFailed, "why"); }, kDpi};
    EXPECT_THROW(recognized({page, page, page}, {.languages = "eng"}), Failure);
}

TEST_F(Recognition, EndsItsProgramsWhenInterrupted) {
    const cv::Mat picture = printedSlip().picture;
    const std::jthread interrupter([this] {
        while (!std::filesystem::exists(folder_.file("text-1.pgm"))) {
            std::this_thread::yield();
        }
        kill(getpid(), SIGTERM);
    });
    EXPECT_THROW(recognized(std::vector<PageForText>(50, asPage(picture)), {.languages = "eng"}),
                 host::Interruption);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

} // namespace
} // namespace doccam::test

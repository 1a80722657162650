// PDFs of the tray's pages, made in the background.
#include "serve/tray/document_maker.h"
#include "tray.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace doccam::serve {
namespace {

class DocumentMakerTest : public testing::Test {
  protected:
    Tray tray_;
};

std::size_t pagesOf(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
        popen(("qpdf --show-npages " + path).c_str(), "r"), pclose);
    std::size_t pages = 0;
    return std::fscanf(pipe.get(), "%zu", &pages) == 1 ? pages : 0;
}

TEST_F(DocumentMakerTest, MakesADocumentOfAllPagesAndLeavesOnlyThat) {
    tray_.add(40);
    tray_.add(50);
    DocumentMaker maker(tray_.store);
    const MadeDocument made = maker.make();
    EXPECT_EQ(pagesOf(made.path), 2U);
    EXPECT_EQ(made.pages.size(), 2U);
    std::filesystem::remove(made.path);
    for (const auto& entry : std::filesystem::directory_iterator(tray_.document.folder())) {
        EXPECT_FALSE(entry.path().filename().string().starts_with("pages-")) << entry.path();
    }
}

TEST_F(DocumentMakerTest, MakesNoneWithoutPages) {
    DocumentMaker maker(tray_.store);
    EXPECT_THROW(maker.make(), TrayError);
}

TEST_F(DocumentMakerTest, MakesNoneThatLacksAPage) {
    const int id = tray_.add();
    tray_.store.pictures().forget(tray_.store.page(id).kept);
    std::filesystem::remove(tray_.document.folder() / "frames" / tray_.store.page(id).kept.frame);
    DocumentMaker maker(tray_.store);
    EXPECT_THROW(maker.make(), TrayError);
}

TEST_F(DocumentMakerTest, RefusesOnceItIsClosed) {
    tray_.add(40);
    DocumentMaker maker(tray_.store);
    maker.close();
    EXPECT_THROW(maker.make(), Busy);
}

TEST_F(DocumentMakerTest, KeepsThePicturesOfADocumentBeingMade) {
    const int id = tray_.add(40, 40);
    const auto held = tray_.store.pictures().picture(tray_.store.page(id).kept);
    tray_.store.remove(id);
    EXPECT_EQ(cv::imread(held->path).size(), cv::Size(40, 40));
}

} // namespace
} // namespace doccam::serve

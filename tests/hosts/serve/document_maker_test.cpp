// PDFs of the tray's pages, made in the background.
#include "serve/tray/page_store.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace doccam::serve {
namespace {

class DocumentMakerTest : public testing::Test {
  protected:
    int addPage(int side) {
        cv::imwrite(store_.incoming(), cv::Mat(side, side, CV_8UC3, cv::Scalar(255, 255, 255)));
        return store_.add({}).id;
    }

    std::filesystem::path folder() const {
        return std::filesystem::path(store_.incoming()).parent_path();
    }

    PageStore store_;
};

std::size_t pagesOf(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    const std::string document = text.str();
    std::size_t pages = 0;
    for (std::size_t at = 0; (at = document.find("/MediaBox", at)) != std::string::npos; ++at) {
        ++pages;
    }
    return pages;
}

TEST_F(DocumentMakerTest, MakesADocumentOfAllPagesAndLeavesOnlyThat) {
    addPage(40);
    addPage(50);
    DocumentMaker maker(store_);
    const std::string path = maker.make();
    EXPECT_EQ(pagesOf(path), 2U);
    for (const auto& entry : std::filesystem::directory_iterator(folder())) {
        EXPECT_FALSE(entry.is_directory()) << entry.path();
    }
}

TEST_F(DocumentMakerTest, MakesNoneWithoutPages) {
    DocumentMaker maker(store_);
    EXPECT_THROW(maker.make(), TrayError);
}

TEST_F(DocumentMakerTest, RefusesOnceItIsClosed) {
    addPage(40);
    DocumentMaker maker(store_);
    maker.close();
    EXPECT_THROW(maker.make(), Busy);
}

TEST_F(DocumentMakerTest, KeepsThePicturesOfADocumentBeingMade) {
    const int id = addPage(40);
    const auto copies = store_.copyPictures(folder() / "copies");
    store_.remove(id);
    ASSERT_EQ(copies.size(), 1U);
    EXPECT_EQ(cv::imread(copies[0]).size(), cv::Size(40, 40));
}

} // namespace
} // namespace doccam::serve

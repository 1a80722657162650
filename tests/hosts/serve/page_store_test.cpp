// The tray of pages.
#include "serve/tray/page_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace doccam::serve {
namespace {

using testing::ElementsAre;

class PageStoreTest : public testing::Test {
  protected:
    int addPage(int width = 80, int height = 40) {
        cv::Mat picture(height, width, CV_8UC3, cv::Scalar(255, 255, 255));
        picture.colRange(0, width / 4).setTo(cv::Scalar(0, 0, 0)); // black on the left
        cv::imwrite(store_.incoming(), picture);
        return store_.add({}).id;
    }

    std::vector<int> ids() const {
        std::vector<int> all;
        for (const Page& page : store_.pages()) {
            all.push_back(page.id);
        }
        return all;
    }

    std::size_t files() const {
        const auto folder = std::filesystem::path(store_.incoming()).parent_path();
        const auto all = std::filesystem::directory_iterator(folder);
        return static_cast<std::size_t>(std::count_if(begin(all), end(all), [](const auto& file) {
            return file.path().extension() == ".jpg";
        }));
    }

    PageStore store_;
};

TEST_F(PageStoreTest, KeepsItsFilesInAFolderOnlyTheUserMayEnter) {
    const auto folder = std::filesystem::path(store_.incoming()).parent_path();
    EXPECT_EQ(std::filesystem::status(folder).permissions(), std::filesystem::perms::owner_all);
}

TEST(PageStore, LeavesNoFileBehind) {
    std::filesystem::path folder;
    {
        const PageStore store;
        folder = std::filesystem::path(store.incoming()).parent_path();
        std::ofstream(store.incoming()) << "something";
    }
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(PageStoreTest, AddsTheIncomingFileAsAPage) {
    const int id = addPage(80, 40);
    const Page page = store_.pages().at(0);
    EXPECT_EQ(page.width, 80);
    EXPECT_EQ(page.height, 40);
    EXPECT_FALSE(std::filesystem::exists(store_.incoming()));
    EXPECT_EQ(cv::imread(store_.picture(id).value()).size(), cv::Size(80, 40));
    EXPECT_EQ(cv::imread(store_.thumbnail(id).value()).size(), cv::Size(240, 120));
}

TEST_F(PageStoreTest, RefusesAFileThatIsNoPicture) {
    std::ofstream(store_.incoming()) << "no picture";
    EXPECT_THROW(store_.add({}), TrayError);
    std::filesystem::remove(store_.incoming());
    EXPECT_THROW(store_.add({}), TrayError);
    EXPECT_THAT(ids(), ElementsAre());
}

TEST_F(PageStoreTest, TurnsAPage) {
    const int id = addPage(80, 40);
    store_.turn(id, 1);
    const cv::Mat turned = cv::imread(store_.picture(id).value());
    EXPECT_EQ(turned.size(), cv::Size(40, 80));
    EXPECT_LT(turned.at<cv::Vec3b>(4, 20)[0], 40) << "what was left is above";
    EXPECT_GT(turned.at<cv::Vec3b>(70, 20)[0], 200);
    EXPECT_EQ(store_.pages().at(0).version, 2);
    EXPECT_EQ(cv::imread(store_.thumbnail(id).value()).size(), cv::Size(120, 240));
}

TEST_F(PageStoreTest, TurnsFromTheOriginalEachTime) {
    const int id = addPage(80, 40);
    const cv::Mat original = cv::imread(store_.picture(id).value());
    for (const int turns : {1, 1, -1, 1, 1, 1}) {
        store_.turn(id, turns);
    }
    const cv::Mat after = cv::imread(store_.picture(id).value());
    EXPECT_EQ(after.size(), original.size());
    EXPECT_LT(cv::norm(after, original, cv::NORM_INF), 8);
    EXPECT_EQ(files(), 4U) << "the original, the turned one, and a thumbnail of each";
}

TEST_F(PageStoreTest, RemovesAPageWithItsFiles) {
    const int first = addPage();
    const int second = addPage();
    store_.turn(first, 1);
    store_.remove(first);
    EXPECT_THAT(ids(), ElementsAre(second));
    EXPECT_EQ(files(), 2U);
    EXPECT_EQ(store_.picture(first), std::nullopt);
    EXPECT_EQ(store_.thumbnail(first), std::nullopt);
}

TEST_F(PageStoreTest, NeverReusesAnId) {
    const int first = addPage();
    store_.remove(first);
    EXPECT_NE(addPage(), first);
}

TEST_F(PageStoreTest, RefusesPagesThatDoNotExist) {
    EXPECT_THROW(store_.turn(1, 1), NoSuchPage);
    EXPECT_THROW(store_.remove(1), NoSuchPage);
}

TEST_F(PageStoreTest, Reorders) {
    const int a = addPage();
    const int b = addPage();
    const int c = addPage();
    store_.reorder({c, a, b});
    EXPECT_THAT(ids(), ElementsAre(c, a, b));
}

TEST_F(PageStoreTest, RefusesAnOrderThatDoesNotNameEachPageOnce) {
    const int a = addPage();
    const int b = addPage();
    for (const std::vector<int>& order :
         {std::vector{a}, {a, a}, {a, b, a}, {a, b + 1}, {}, {a, b, b + 1}}) {
        EXPECT_THROW(store_.reorder(order), BadOrder);
    }
    EXPECT_THAT(ids(), ElementsAre(a, b));
}

TEST_F(PageStoreTest, IsFullAtItsLimit) {
    for (std::size_t i = 0; i < PageStore::kMaximumPages; ++i) {
        store_.requireRoom();
        addPage(8, 8);
    }
    EXPECT_THROW(store_.requireRoom(), TrayError);
}

} // namespace
} // namespace doccam::serve

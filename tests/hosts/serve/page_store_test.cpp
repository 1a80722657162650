// The tray of pages.
#include "host/failure.h"
#include "serve/tray/page_store.h"
#include "tray.h"

#include <gmock/gmock.h>

namespace doccam::serve {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class PageStoreTest : public testing::Test {
  protected:
    host::Recipe turned(int id, int quarters) const {
        host::Recipe recipe = tray_.store.page(id).kept.recipe;
        recipe.turn = quarters;
        return recipe;
    }

    Tray tray_;
};

TEST_F(PageStoreTest, KeepsItsFilesInAFolderOnlyTheUserMayEnter) {
    EXPECT_EQ(fs::status(tray_.document.folder()).permissions(), fs::perms::owner_all);
}

TEST(PageStore, LeavesNoFileBehind) {
    fs::path folder;
    {
        Tray tray;
        tray.picture(tray.add());
        folder = tray.document.folder();
    }
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(PageStoreTest, AddsADraftAsAPage) {
    const int id = tray_.add(80, 40, {"a code"});
    const Page page = tray_.store.page(id);
    EXPECT_EQ(page.size, cv::Size(80, 40));
    EXPECT_EQ(page.version(), 1);
    EXPECT_THAT(page.kept.origin.codes, ElementsAre("a code"));
    EXPECT_EQ(tray_.picture(id).size(), cv::Size(80, 40));
    EXPECT_EQ(tray_.thumbnail(id), cv::Size(240, 120));
}

TEST_F(PageStoreTest, AddsNoPageOfADamagedFrame) {
    host::PageDraft draft;
    draft.frame = {0xFF, 0xD8, 0xFF, 1, 2, 3};
    const auto readNoCodes = [](const std::string&) { return std::vector<std::string>(); };
    EXPECT_THROW(tray_.store.add(draft, readNoCodes), TrayError);
    EXPECT_THAT(tray_.ids(), IsEmpty());
    EXPECT_EQ(tray_.picture(tray_.add(80, 40)).size(), cv::Size(80, 40));
}

TEST_F(PageStoreTest, ShowsNoFrameThatBecameNoPage) {
    host::PageDraft draft;
    cv::imencode(".jpg", cv::Mat(30, 30, CV_8UC3, cv::Scalar(0, 0, 0)), draft.frame);
    const auto fail = [](const std::string&) -> std::vector<std::string> {
        throw std::bad_alloc();
    };
    EXPECT_THROW(tray_.store.add(draft, fail), std::bad_alloc);
    EXPECT_EQ(tray_.picture(tray_.add(80, 40)).size(), cv::Size(80, 40));
}

TEST_F(PageStoreTest, MakesAPageAnew) {
    const int id = tray_.add(80, 40);
    tray_.store.change(id, turned(id, 1));
    const cv::Mat picture = tray_.picture(id);
    EXPECT_EQ(picture.size(), cv::Size(40, 80));
    EXPECT_LT(picture.at<cv::Vec3b>(4, 20)[0], 40) << "what was left is above";
    EXPECT_GT(picture.at<cv::Vec3b>(70, 20)[0], 200);
    EXPECT_EQ(tray_.store.page(id).version(), 2);
    EXPECT_EQ(tray_.store.page(id).size, cv::Size(40, 80));
    EXPECT_EQ(tray_.thumbnail(id), cv::Size(120, 240));
}

TEST_F(PageStoreTest, LosesNoQualityByManyChanges) {
    const int id = tray_.add(80, 40);
    const cv::Mat original = tray_.picture(id);
    for (const int turn : {1, 2, 1, 3, 2, 0}) {
        tray_.store.change(id, turned(id, turn));
        tray_.picture(id);
    }
    EXPECT_EQ(cv::norm(tray_.picture(id), original, cv::NORM_INF), 0);
    EXPECT_EQ(tray_.pictureFiles(), 1U);
}

TEST_F(PageStoreTest, RefusesCornersThatEncloseNothing) {
    const int id = tray_.add();
    host::Recipe recipe = turned(id, 0);
    recipe.corners = host::SheetCorners{{{5, 5}, {5, 5}, {5, 5}, {5, 5}}};
    EXPECT_THROW(tray_.store.change(id, recipe), BadChange);
    EXPECT_EQ(tray_.store.page(id).version(), 1);
}

TEST_F(PageStoreTest, RestoresARemovedPageToItsPlace) {
    const int first = tray_.add();
    const int second = tray_.add(60, 60);
    const int third = tray_.add();
    tray_.store.remove(second);
    EXPECT_THAT(tray_.ids(), ElementsAre(first, third));
    EXPECT_THROW(tray_.store.page(second), NoSuchPage);
    ASSERT_EQ(tray_.store.removedPages().size(), 1U);
    EXPECT_EQ(tray_.store.removedPages()[0].size, cv::Size(60, 60));
    tray_.store.restore(second);
    EXPECT_THAT(tray_.ids(), ElementsAre(first, second, third));
    EXPECT_EQ(tray_.picture(second).size(), cv::Size(60, 60));
    EXPECT_THAT(tray_.store.removedPages(), IsEmpty());
}

TEST_F(PageStoreTest, NeverReusesAnId) {
    const int first = tray_.add();
    tray_.store.remove(first);
    EXPECT_NE(tray_.add(), first);
}

TEST_F(PageStoreTest, RefusesPagesThatDoNotExist) {
    EXPECT_THROW(tray_.store.change(1, {}), NoSuchPage);
    EXPECT_THROW(tray_.store.remove(1), NoSuchPage);
    EXPECT_THROW(tray_.store.restore(1), NoSuchPage);
}

TEST_F(PageStoreTest, Reorders) {
    const int a = tray_.add();
    const int b = tray_.add();
    const int c = tray_.add();
    tray_.store.reorder({c, a, b});
    EXPECT_THAT(tray_.ids(), ElementsAre(c, a, b));
}

TEST_F(PageStoreTest, RefusesAnOrderThatDoesNotNameEachPageOnce) {
    const int a = tray_.add();
    const int b = tray_.add();
    for (const std::vector<int>& order :
         {std::vector{a}, {a, a}, {a, b, a}, {a, b + 1}, {}, {a, b, b + 1}}) {
        EXPECT_THROW(tray_.store.reorder(order), BadChange);
    }
    EXPECT_THAT(tray_.ids(), ElementsAre(a, b));
}

TEST_F(PageStoreTest, IsFullAtItsLimit) {
    const int first = tray_.add(8, 8);
    tray_.store.remove(first);
    for (std::size_t i = 0; i < PageStore::kMaximumPages; ++i) {
        tray_.store.requireRoom();
        tray_.add(8, 8);
    }
    EXPECT_THROW(tray_.store.requireRoom(), TrayError);
    EXPECT_THROW(tray_.store.restore(first), TrayError);
}

TEST_F(PageStoreTest, IsSavedUntilAPageChanges) {
    const int id = tray_.add();
    const auto before = tray_.store.pages();
    tray_.store.change(id, turned(id, 1));
    tray_.store.noteSaved(before);
    EXPECT_FALSE(tray_.document.pages().isSaved()) << "the user has another page";
    tray_.store.noteSaved(tray_.store.pages());
    EXPECT_TRUE(tray_.document.pages().isSaved());
    tray_.store.remove(id);
    EXPECT_FALSE(tray_.document.pages().isSaved());
}

TEST_F(PageStoreTest, ShowsThatAFrameIsDamaged) {
    const int id = tray_.add();
    fs::remove(tray_.document.folder() / "frames" / tray_.store.page(id).kept.frame);
    PageStore again(tray_.document);
    EXPECT_TRUE(again.page(id).size.empty());
    EXPECT_THROW(again.pictures().picture(again.page(id).kept), host::DamagedFrame);
    EXPECT_THROW(again.change(id, {}), TrayError);
    again.remove(id);
    EXPECT_THAT(again.pages(), IsEmpty());
}

} // namespace
} // namespace doccam::serve

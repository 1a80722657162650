// Documents that a process left, their removed pages, and who goes on with them.
#include "host/failure.h"
#include "pages/spool/spool.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>

namespace {

using namespace doccam::host;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

const FrameFile kAnyFrame{0xFF, 0xD8, 0xFF, 0xD9};

std::vector<int> idsOf(const std::vector<KeptPage>& pages) {
    std::vector<int> ids;
    for (const KeptPage& page : pages) {
        ids.push_back(page.id);
    }
    return ids;
}

class Left : public testing::Test {
  protected:
    Left() { setenv("XDG_STATE_HOME", scratch_.path().c_str(), 1); }

    ~Left() override { unsetenv("XDG_STATE_HOME"); }

    static std::unique_ptr<PageDocument> made(const Spool& spool, PageTaker taker, int pages) {
        DocumentPlan plan;
        plan.taker = taker;
        auto document = spool.create(plan);
        for (int i = 0; i < pages; ++i) {
            document->add(document->keep(kAnyFrame), Recipe{}, {.codes = {"a \xFF code %"}});
        }
        return document;
    }

    fs::path frame(const PageDocument& document, int number) const {
        return scratch_.path() / "doccam" / "spool" / document.name() / frameName(number, ".jpg");
    }

  private:
    doccam::test::ScratchFolder scratch_;
};

TEST_F(Left, DocumentsAreTakenUpByTheCommandThatTookTheirPages) {
    const Spool spool;
    made(spool, PageTaker::kServe, 1);
    const std::string newest = made(spool, PageTaker::kServe, 2)->name();
    const std::string scanned = made(spool, PageTaker::kScan, 3)->name();
    EXPECT_EQ(spool.newestUnsaved(), scanned);
    EXPECT_EQ(spool.newestUnsaved(PageTaker::kServe), newest);
    EXPECT_EQ(spool.takeUp(PageTaker::kServe)->name(), newest);
    EXPECT_EQ(spool.takeUp(PageTaker::kScan)->name(), scanned);
}

TEST_F(Left, DocumentsInUseSavedOrEmptyAreNotTakenUp) {
    const Spool spool;
    const auto first = made(spool, PageTaker::kServe, 1);
    made(spool, PageTaker::kServe, 1)->markSaved();
    made(spool, PageTaker::kServe, 0);
    EXPECT_EQ(spool.takeUp(PageTaker::kServe), nullptr);
}

TEST_F(Left, PagesKeepTheirCodesAndTheNumberOfTheirChanges) {
    const Spool spool;
    auto document = made(spool, PageTaker::kServe, 1);
    document->change(1, {.turn = 1});
    document->change(1, {.turn = 2});
    document.reset();
    document = spool.takeUp(PageTaker::kServe);
    const KeptPage page = document->pages().at(0);
    EXPECT_EQ(page.changes, 2);
    EXPECT_EQ(page.recipe.turn, 2);
    EXPECT_THAT(page.origin.codes, ElementsAre("a \xFF code %"));
}

TEST_F(Left, PagesStayRemovedAndAreRestoredToTheirPlaces) {
    const Spool spool;
    auto document = made(spool, PageTaker::kServe, 3);
    document->setAside(2);
    document->setAside(1);
    EXPECT_THAT(idsOf(document->pages()), ElementsAre(3));
    document.reset();
    document = spool.takeUp(PageTaker::kServe);
    EXPECT_THAT(idsOf(document->pages()), ElementsAre(3));
    EXPECT_THAT(idsOf(document->removedPages()), ElementsAre(2, 1));
    document->restore(1);
    document->restore(2);
    EXPECT_THAT(idsOf(document->pages()), ElementsAre(1, 2, 3));
    EXPECT_THAT(document->removedPages(), IsEmpty());
    EXPECT_TRUE(fs::exists(frame(*document, 2)));
    EXPECT_THROW(document->restore(2), Failure);
    EXPECT_THROW(document->setAside(9), Failure);
}

TEST_F(Left, RemovedPagesAreNoPagesOfTheDocument) {
    const Spool spool;
    made(spool, PageTaker::kServe, 1)->setAside(1);
    EXPECT_EQ(spool.newestUnsaved(), "");
    EXPECT_THAT(spool.list().at(0).manifest->pages, IsEmpty());
    const Spool later;
    EXPECT_THAT(later.list(), SizeIs(1)) << "the page can still be restored";
    EXPECT_NE(later.takeUp(PageTaker::kServe), nullptr);
}

TEST_F(Left, OnlyTheLastRemovedPagesCanBeRestored) {
    const Spool spool;
    const int pages = static_cast<int>(PageDocument::kMaximumRemoved) + 2;
    const auto document = made(spool, PageTaker::kServe, pages);
    for (int id = 1; id < pages; ++id) {
        document->setAside(id);
    }
    EXPECT_THAT(document->removedPages(), SizeIs(PageDocument::kMaximumRemoved));
    EXPECT_THROW(document->restore(1), Failure);
    EXPECT_FALSE(fs::exists(frame(*document, 1)));
    EXPECT_TRUE(fs::exists(frame(*document, 2)));
}

} // namespace

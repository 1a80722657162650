// Documents in the making, on disk.
#include "host/failure.h"
#include "pages/rendering.h"
#include "pages/spool/spool.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using namespace doccam::host;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

cv::Mat picture(int shade) {
    cv::Mat frame(240, 320, CV_8UC3, cv::Scalar(60, 66, 72));
    cv::rectangle(frame, cv::Rect(60, 40, 180, 140), cv::Scalar(225, 230, 232), cv::FILLED);
    cv::rectangle(frame, cv::Rect(80, 60, 40, 30), cv::Scalar(shade, 40, 200), cv::FILLED);
    return frame;
}

FrameFile jpeg(int shade = 10) {
    FrameFile bytes;
    cv::imencode(".jpg", picture(shade), bytes);
    return bytes;
}

Recipe ofASheet() {
    Recipe recipe;
    recipe.corners = SheetCorners{{{60.25, 40}, {239, 40}, {239, 179}, {60, 179}}};
    return recipe;
}

// What action is refused with; empty if it is not.
template <typename Action>
std::string refusal(const Action& action) {
    try {
        action();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "";
}

class SpoolTest : public testing::Test {
  protected:
    SpoolTest() { setenv("XDG_STATE_HOME", scratch_.path().c_str(), 1); }

    ~SpoolTest() override { unsetenv("XDG_STATE_HOME"); }

    fs::path folder() const { return scratch_.path() / "doccam" / "spool"; }

    fs::path outside() const { return scratch_.path() / "outside"; }

    // A document with so many pages, closed; its name.
    static std::string document(const Spool& spool, int pages) {
        const auto made = spool.create({.target = "/somewhere/letter.pdf"});
        for (int i = 0; i < pages; ++i) {
            made->add(made->keep(jpeg(i)), ofASheet());
        }
        return made->name();
    }

    static std::vector<int> idsOf(const PageDocument& document) {
        std::vector<int> ids;
        for (const KeptPage& page : document.pages()) {
            ids.push_back(page.id);
        }
        return ids;
    }

  private:
    doccam::test::ScratchFolder scratch_;
};

using Spooled = SpoolTest;

TEST_F(Spooled, PagesOutliveTheObjectThatAddedThem) {
    const Spool spool;
    const std::string name = document(spool, 2);
    const auto again = spool.open(name);
    EXPECT_EQ(again->plan().target, "/somewhere/letter.pdf");
    ASSERT_THAT(again->pages(), SizeIs(2));
    const KeptPage page = again->pages()[1];
    EXPECT_EQ(page.recipe.corners->at(0).x, 60.25);
    EXPECT_EQ(cv::norm(again->frame(page.frame), cv::imdecode(jpeg(1), cv::IMREAD_COLOR)), 0);
}

TEST_F(Spooled, FramesAreTheBytesOfTheCamera) {
    const Spool spool;
    const std::string name = document(spool, 1);
    std::ifstream file(folder() / name / "frame-000001.jpg", std::ios::binary);
    const FrameFile bytes{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(bytes, jpeg(0));
}

TEST_F(Spooled, AnyFileNameSurvives) {
    const Spool spool;
    const std::string target = "/a\xFF\x01%20 \"b\xC3\xA9.pdf";
    const std::string name = spool.create({.target = target, .wholeFrame = true})->name();
    const auto again = spool.open(name);
    EXPECT_EQ(again->plan().target, target);
    EXPECT_TRUE(again->plan().wholeFrame);
}

TEST_F(Spooled, IsForThisUserOnly) {
    const Spool spool;
    const std::string name = document(spool, 1);
    for (const fs::path& path : {folder(), folder() / name}) {
        EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_all);
    }
    for (const auto& file : fs::directory_iterator(folder() / name)) {
        EXPECT_EQ(file.status().permissions(), fs::perms::owner_read | fs::perms::owner_write);
    }
}

TEST_F(Spooled, PagesAreRetakenDroppedAndReordered) {
    const Spool spool;
    const std::string name = document(spool, 3);
    {
        const auto edited = spool.open(name);
        edited->retake(3, edited->keep(jpeg(99)), Recipe{});
        edited->remove(1);
        edited->reorder({3, 2});
        EXPECT_EQ(edited->add(edited->keep(jpeg(4)), Recipe{}).id, 5);
        EXPECT_NE(refusal([&] { edited->reorder({3, 3, 2}); }), "");
        EXPECT_NE(refusal([&] { edited->remove(1); }), "");
    }
    const auto again = spool.open(name);
    EXPECT_THAT(idsOf(*again), ElementsAre(3, 2, 5));
    EXPECT_FALSE(again->pages()[0].recipe.corners);
    EXPECT_EQ(
        cv::norm(again->frame(again->pages()[0].frame), cv::imdecode(jpeg(99), cv::IMREAD_COLOR)),
        0);
    // Owner, manifest, three frames.
    EXPECT_EQ(std::distance(fs::directory_iterator(folder() / name), {}), 5);
}

TEST_F(Spooled, ADocumentInUseIsLeftAlone) {
    const Spool spool;
    const auto used = spool.create({});
    used->add(used->keep(jpeg()), Recipe{});
    EXPECT_TRUE(spool.list().at(0).inUse);
    EXPECT_THAT(refusal([&] { spool.open(used->name()); }), HasSubstr("in use"));
    EXPECT_THAT(refusal([&] { spool.clear(used->name()); }), HasSubstr("in use"));
    EXPECT_EQ(spool.newestUnsaved(), "");
}

TEST_F(Spooled, TheNewestUnsavedDocumentIsFound) {
    const Spool spool;
    const std::string oldest = document(spool, 1);
    const std::string newer = document(spool, 1);
    spool.open(document(spool, 1))->markSaved();
    document(spool, 0);
    EXPECT_EQ(spool.newestUnsaved(), newer);
    spool.clear(newer);
    EXPECT_EQ(spool.newestUnsaved(), oldest);
}

TEST_F(Spooled, SavedDocumentsAreClearedLater) {
    const Spool spool;
    const std::string saved = document(spool, 1);
    const std::string unsaved = document(spool, 1);
    const std::string empty = document(spool, 0);
    spool.open(saved)->markSaved();
    EXPECT_THAT(Spool().list(), SizeIs(2)); // the empty one has nothing to lose
    const Spool impatient({.savedFor = std::chrono::seconds(-1)});
    ASSERT_THAT(impatient.list(), SizeIs(1));
    EXPECT_EQ(impatient.list()[0].name, unsaved);
}

TEST_F(Spooled, AChangeMakesASavedDocumentUnsaved) {
    const Spool spool;
    const std::string name = document(spool, 1);
    spool.open(name)->markSaved();
    EXPECT_EQ(spool.newestUnsaved(), "");
    spool.open(name)->change(1, Recipe{});
    EXPECT_EQ(spool.newestUnsaved(), name);
}

TEST_F(Spooled, SavedDocumentsMakeRoomAndUnsavedOnesDoNot) {
    const FrameFile large(400 << 10, 1);
    const Spool spool({.bytes = 1 << 20});
    const auto saved = spool.create({});
    saved->add(saved->keep(large), Recipe{});
    saved->markSaved();
    const auto unsaved = spool.create({});
    unsaved->add(unsaved->keep(large), Recipe{});
    // The saved one is in use.
    EXPECT_THAT(refusal([&] { unsaved->keep(large); }), HasSubstr("1 MiB"));
    const std::string idle = document(spool, 1);
    spool.open(idle)->markSaved();
    EXPECT_THAT(refusal([&] { unsaved->keep(large); }), HasSubstr("1 MiB"));
    EXPECT_THAT(unsaved->pages(), SizeIs(1));
    EXPECT_THAT(spool.list(), SizeIs(2));
}

TEST_F(Spooled, OldestSavedDocumentsGoFirst) {
    const FrameFile large(300 << 10, 1);
    const Spool spool({.bytes = 1 << 20});
    std::vector<std::string> names;
    for (int i = 0; i < 3; ++i) {
        const auto made = spool.create({});
        made->add(made->keep(large), Recipe{});
        made->markSaved();
        names.push_back(made->name());
    }
    const auto next = spool.create({});
    next->add(next->keep(large), Recipe{});
    const auto entries = spool.list();
    ASSERT_THAT(entries, SizeIs(3));
    EXPECT_EQ(entries[0].name, names[1]);
}

TEST_F(Spooled, UnfinishedFilesAreNoPages) {
    const Spool spool;
    const std::string name = document(spool, 1);
    std::ofstream(folder() / name / "frame-000002.jpg") << "kept, but no page";
    std::ofstream(folder() / name / "frame-000003.jpg.new") << "half";
    std::ofstream(folder() / name / "pages.json.new") << "{";
    const auto again = spool.open(name);
    EXPECT_THAT(again->pages(), SizeIs(1));
    again->add(again->keep(jpeg(7)), Recipe{});
    EXPECT_EQ(
        cv::norm(again->frame(again->pages()[1].frame), cv::imdecode(jpeg(7), cv::IMREAD_COLOR)),
        0);
}

TEST_F(Spooled, DamageIsReportedAndHarmsNoOtherDocument) {
    const Spool spool;
    const std::string damaged = document(spool, 1);
    const std::string missing = document(spool, 2);
    const std::string sound = document(spool, 1);
    std::ofstream(folder() / damaged / "pages.json") << R"({"version": 1, "pages": [)";
    fs::remove(folder() / missing / "frame-000001.jpg");
    std::ofstream(folder() / missing / "frame-000002.jpg") << "no picture";
    const auto entries = spool.list();
    ASSERT_THAT(entries, SizeIs(3));
    EXPECT_FALSE(entries[0].manifest);
    EXPECT_THAT(entries[1].damaged, ElementsAre("frame-000001.jpg", "frame-000002.jpg"));
    EXPECT_THAT(refusal([&] { spool.open(damaged); }), HasSubstr(damaged));
    const auto opened = spool.open(missing);
    for (const KeptPage& page : opened->pages()) {
        EXPECT_THAT(refusal([&] { opened->frame(page.frame); }), HasSubstr(page.frame));
    }
    EXPECT_EQ(spool.newestUnsaved(), sound);
}

TEST_F(Spooled, LinksAreNotFollowed) {
    fs::create_directory(outside());
    cv::imwrite((outside() / "frame.jpg").string(), picture(0));
    std::ofstream(outside() / "precious") << "text";
    const Spool spool;
    const std::string name = document(spool, 1);
    const fs::path frame = folder() / name / "frame-000001.jpg";
    fs::remove(frame);
    fs::create_symlink(outside() / "frame.jpg", frame);
    fs::create_directory_symlink(outside(), folder() / "20200101-000000-000000-abcdef");
    EXPECT_THAT(spool.list().back().damaged, ElementsAre("frame-000001.jpg"));
    EXPECT_NE(refusal([&] { spool.open("20200101-000000-000000-abcdef"); }), "");
    EXPECT_NE(refusal([&] { spool.clear("20200101-000000-000000-abcdef"); }), "");
    spool.clear(name);
    EXPECT_TRUE(fs::exists(outside() / "frame.jpg"));
    EXPECT_TRUE(fs::exists(outside() / "precious"));
}

TEST_F(Spooled, NamesLeadNowhereElse) {
    const Spool spool;
    fs::create_directory(outside());
    for (const char* name :
         {"..", "../../outside", "", "/", ".", "20200101-000000-000000-abcde/"}) {
        EXPECT_NE(refusal([&] { spool.open(name); }), "") << name;
        EXPECT_NE(refusal([&] { spool.clear(name); }), "") << name;
    }
    EXPECT_TRUE(fs::exists(outside()));
}

TEST_F(Spooled, ManifestsThatPointElsewhereAreDamaged) {
    Manifest manifest;
    manifest.last = 3;
    manifest.pages = {{1, "frame-000001.jpg", ofASheet()}, {2, "frame-000002.png", Recipe{}}};
    manifest.removed = {{.page = {3, "frame-000003.jpg", Recipe{}}, .place = 1}};
    const std::string sound = textOf(manifest);
    ASSERT_TRUE(parseManifest(sound));
    for (const auto& [part, other] :
         {std::pair("frame-000001.jpg", "../frame-000001.jpg"),
          std::pair("frame-000001.jpg", "frame-1/../x.jpg"),
          std::pair("frame-000001.jpg", "pages.json"),
          std::pair("frame-000002.png", "frame-000001.jpg"), std::pair("60.25", "1e300"),
          std::pair("60.25", "null"), std::pair("\"turn\": 0", "\"turn\": 4"),
          std::pair("\"turn\": 0", "\"turn\": 1e99"), std::pair("\"id\": 2", "\"id\": 1"),
          std::pair("\"id\": 2", "\"id\": 3"), std::pair("\"id\": 3", "\"id\": 4"),
          std::pair("frame-000003.jpg", "frame-000001.jpg"),
          std::pair("\"place\": 1", "\"place\": -1"), std::pair("\"scan\"", "\"read\""),
          std::pair("\"quality\": 85", "\"quality\": -1"), std::pair("paper", "shiny"),
          std::pair("\"version\": 1", "\"version\": 2")}) {
        std::string text = sound;
        ASSERT_NE(text.find(part), std::string::npos) << part;
        text.replace(text.find(part), std::string(part).size(), other);
        EXPECT_FALSE(parseManifest(text)) << other;
    }
    for (std::size_t length = 0; length + 2 < sound.size(); ++length) {
        EXPECT_FALSE(parseManifest(sound.substr(0, length))) << length;
    }
}

TEST_F(Spooled, PlansKeepHowPagesAreMade) {
    Manifest manifest;
    EXPECT_FALSE(parseManifest(textOf(manifest))->plan.stills);
    manifest.plan.stills = {.edges = true, .background = false};
    const auto again = parseManifest(textOf(manifest));
    ASSERT_TRUE(again && again->plan.stills);
    EXPECT_TRUE(again->plan.stills->edges);
    EXPECT_FALSE(again->plan.stills->background);
}

TEST_F(Spooled, ManifestsOfEarlierVersionsAreRead) {
    for (const bool whole : {false, true}) {
        Manifest manifest;
        manifest.plan.wholeFrame = whole;
        manifest.plan.recipe.look = Look::kPhoto;
        std::string text = textOf(manifest);
        const std::string newer = " \"stills\": null,\n";
        ASSERT_NE(text.find(newer), std::string::npos);
        text.erase(text.find(newer), newer.size());
        const auto read = parseManifest(text);
        ASSERT_TRUE(read);
        EXPECT_EQ(read->plan.stills.has_value(), whole);
        EXPECT_EQ(read->plan.recipe.look, Look::kPhoto);
    }
}

TEST_F(Spooled, AFullDiskLosesNoEarlierPage) {
    const Spool spool;
    const std::string name = document(spool, 1);
    const auto full = [&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        setrlimit(RLIMIT_FSIZE, &limit);
        const auto opened = spool.open(name);
        const bool refused = refusal([&] {
                                 opened->keep(FrameFile(8192, 1));
                             }).find("could not be kept") != std::string::npos;
        std::_Exit(refused && opened->pages().size() == 1 ? 0 : 1);
    };
    EXPECT_EXIT(full(), testing::ExitedWithCode(0), "");
    EXPECT_THAT(spool.open(name)->pages(), SizeIs(1));
    EXPECT_THAT(spool.list().at(0).damaged, IsEmpty());
}

TEST_F(Spooled, APlaceThatCannotBeUsedIsNamed) {
    fs::create_directories(folder().parent_path());
    std::ofstream(folder()) << "a file";
    EXPECT_THAT(refusal([] { const Spool spool; }), HasSubstr(folder().string()));
    setenv("XDG_STATE_HOME", "", 1);
    setenv("HOME", "", 1);
    EXPECT_THAT(refusal([] { const Spool spool; }), HasSubstr("no place"));
}

TEST_F(Spooled, TenChangesLoseNothingAgainstOne) {
    const Spool spool;
    const std::string name = document(spool, 1);
    const auto bytes = [&](const PageDocument& document) {
        const KeptPage page = document.pages()[0];
        return encodePage("a.jpg", *renderPage(document.frame(page.frame), page.recipe),
                          page.recipe.quality);
    };
    Recipe last = ofASheet();
    last.corners->at(2).x += 2.5;
    last.turn = 3;
    last.colour = Colour::kGrey;
    for (int i = 0; i < 9; ++i) {
        Recipe recipe = last;
        recipe.corners->at(static_cast<std::size_t>(i % 4)).y += i;
        recipe.turn = i % 4;
        recipe.look = i % 2 == 0 ? Look::kPhoto : Look::kPaper;
        recipe.colour = static_cast<Colour>(i % 3);
        recipe.quality = 10 + i;
        const auto document = spool.open(name);
        document->change(1, recipe);
        bytes(*document);
    }
    spool.open(name)->change(1, last);
    const std::string once = document(spool, 1);
    spool.open(once)->change(1, last);
    EXPECT_EQ(bytes(*spool.open(name)), bytes(*spool.open(once)));
}

TEST(UnspooledDocument, LivesInTheGivenFolder) {
    const doccam::test::ScratchFolder scratch;
    const auto document = PageDocument::inFolder(scratch.path(), {});
    document->add(document->keep(jpeg()), Recipe{});
    EXPECT_EQ(document->name(), "");
    EXPECT_EQ(document->frame(document->pages()[0].frame).cols, 320);
}

} // namespace

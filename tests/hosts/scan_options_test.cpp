// What a resumed scan takes from its document, and what from the command line.
#include "scan/scan_options.h"

#include <gtest/gtest.h>

namespace {

using namespace doccam::host;

// The plan of a document that was scanned with given and is gone on with by others.
DocumentPlan resumed(const ScanOptions& given, ScanOptions others = {}) {
    others.adopt(given.documentPlan());
    return others.documentPlan();
}

ScanOptions cleaning(bool edges, bool background) {
    ScanOptions options;
    options.page.cleanEdges = edges;
    options.page.cleanBackground = background;
    return options;
}

ScanOptions wholeFrame(std::optional<Look> look = std::nullopt) {
    ScanOptions options;
    options.plan.whole = true;
    options.look = look;
    return options;
}

ScanOptions cropping(Crop crop) {
    ScanOptions options;
    options.crop = crop;
    return options;
}

ScanOptions looking(Look look) {
    ScanOptions options;
    options.look = look;
    return options;
}

TEST(ResumedScan, KeepsTheLook) {
    EXPECT_EQ(resumed(looking(Look::kPhoto)).recipe.look, Look::kPhoto);
    EXPECT_EQ(resumed(looking(Look::kPhoto), looking(Look::kPaper)).recipe.look, Look::kPaper);
    EXPECT_FALSE(resumed(looking(Look::kPhoto)).stills);
}

TEST(ResumedScan, KeepsTheStills) {
    const DocumentPlan plan = resumed(cleaning(true, false));
    ASSERT_TRUE(plan.stills);
    EXPECT_TRUE(plan.stills->edges);
    EXPECT_FALSE(plan.stills->background);
    EXPECT_TRUE(resumed(cropping(Crop::kRectangle)).stills);
    EXPECT_FALSE(resumed(cropping(Crop::kRectangle)).wholeFrame);
}

TEST(ResumedScan, KeepsWholeFramesAndWhatMakesThem) {
    const DocumentPlan stills = resumed(wholeFrame());
    EXPECT_TRUE(stills.wholeFrame && stills.stills);
    const DocumentPlan engine = resumed(wholeFrame(Look::kPhoto));
    EXPECT_TRUE(engine.wholeFrame && !engine.stills);
    EXPECT_EQ(engine.recipe.look, Look::kPhoto);
}

TEST(ResumedScan, LeavesTheStillsForALook) {
    const DocumentPlan plan = resumed(cleaning(true, true), looking(Look::kPhoto));
    EXPECT_FALSE(plan.stills);
    EXPECT_EQ(plan.recipe.look, Look::kPhoto);
}

TEST(ResumedScan, LeavesTheEngineForStills) {
    const DocumentPlan plan = resumed(looking(Look::kPhoto), cleaning(false, true));
    ASSERT_TRUE(plan.stills);
    EXPECT_TRUE(plan.stills->background);
}

TEST(ResumedScan, ChangesWhatOfTheFrameBecomesAPage) {
    const DocumentPlan sheet = resumed(wholeFrame(Look::kPhoto), cropping(Crop::kSheet));
    EXPECT_FALSE(sheet.wholeFrame || sheet.stills);
    EXPECT_EQ(sheet.recipe.look, Look::kPhoto);
    const DocumentPlan whole = resumed(cropping(Crop::kRectangle), wholeFrame());
    EXPECT_TRUE(whole.wholeFrame && whole.stills);
    const DocumentPlan rectangle = resumed(wholeFrame(), cropping(Crop::kRectangle));
    EXPECT_TRUE(!rectangle.wholeFrame && rectangle.stills);
}

TEST(ResumedScan, KeepsTurnColourAndQualityUnlessGiven) {
    ScanOptions before;
    before.page = {.quarterTurns = 3, .colour = Colour::kGrey, .quality = 40};
    ScanOptions after;
    after.page.quality = 60;
    after.given = {"--quality"};
    const Recipe recipe = resumed(before, after).recipe;
    EXPECT_EQ(recipe.turn, 3);
    EXPECT_EQ(recipe.colour, Colour::kGrey);
    EXPECT_EQ(recipe.quality, 60);
}

TEST(ResumedScan, KeepsWhatIsSaidOfTheDocumentUnlessGiven) {
    ScanOptions before;
    before.document = {.text = {.languages = "eng", .upright = true},
                       .compact = true,
                       .title = "Letter",
                       .author = "Ada",
                       .language = "en",
                       .date = 86400};
    ScanOptions after;
    after.document.title = "Two letters";
    after.given = {"--title", "--upright"};
    const DocumentOptions document = resumed(before, after).document;
    EXPECT_EQ(document.text.languages, "eng");
    EXPECT_FALSE(document.text.upright);
    EXPECT_TRUE(document.compact);
    EXPECT_EQ(document.title, "Two letters");
    EXPECT_EQ(document.author, "Ada");
    EXPECT_EQ(document.language, "en");
    EXPECT_EQ(document.date, 86400);
}

TEST(ResumedScan, ComesToTheSameTheNextTime) {
    for (const ScanOptions& options :
         {looking(Look::kPhoto), cleaning(true, true), wholeFrame(), wholeFrame(Look::kPaper),
          cropping(Crop::kRectangle), cropping(Crop::kSheet)}) {
        const DocumentPlan once = options.documentPlan();
        const DocumentPlan again = resumed(options);
        EXPECT_EQ(again.wholeFrame, once.wholeFrame);
        EXPECT_EQ(again.stills.has_value(), once.stills.has_value());
        EXPECT_EQ(again.recipe.look, once.recipe.look);
    }
}

} // namespace

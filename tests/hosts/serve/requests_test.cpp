// Parsing and checking a page's requests.
#include "serve/commands/requests.h"

#include <gtest/gtest.h>

namespace doccam::serve {

TEST(ParseBody, TakesObjectsAndNothingElse) {
    EXPECT_EQ(parseBody(R"({"a": 1})").at("a"), 1);
    EXPECT_TRUE(parseBody("").empty());
    for (const char* body : {"[]", "1", "null", "{", "{\"a\":}", "\"text\"", "{}{}"}) {
        EXPECT_THROW(parseBody(body), BadRequest) << body;
    }
}

TEST(Integer, IsAWholeNumberWithinItsRange) {
    const Json object{{"low", 1},          {"high", 9},   {"beyond", 10},
                      {"half", 1.5},       {"text", "1"}, {"huge", 18446744073709551615ULL},
                      {"nothing", nullptr}};
    EXPECT_EQ(integer(object, "low", 1, 9), 1);
    EXPECT_EQ(integer(object, "high", 1, 9), 9);
    for (const char* field : {"beyond", "half", "text", "huge", "nothing", "missing"}) {
        EXPECT_THROW(integer(object, field, 1, 9), BadRequest) << field;
    }
}

TEST(Integers, AreAListOfPossibleIds) {
    EXPECT_EQ(integers({{"ids", {3, 1, 2}}}, "ids", 3), (std::vector{3, 1, 2}));
    EXPECT_TRUE(integers({{"ids", Json::array()}}, "ids", 3).empty());
    EXPECT_THROW(integers({{"ids", {1, 2, 3, 4}}}, "ids", 3), BadRequest);
    EXPECT_THROW(integers({{"ids", {1, "2"}}}, "ids", 3), BadRequest);
    EXPECT_THROW(integers({{"ids", {-1}}}, "ids", 3), BadRequest);
    EXPECT_THROW(integers({{"ids", {4294967297}}}, "ids", 3), BadRequest);
    EXPECT_THROW(integers({{"ids", 1}}, "ids", 3), BadRequest);
}

TEST(QuarterTurn, IsLeftOrRight) {
    EXPECT_EQ(quarterTurn({{"direction", "left"}}), -1);
    EXPECT_EQ(quarterTurn({{"direction", "right"}}), 1);
    EXPECT_THROW(quarterTurn({{"direction", "up"}}), BadRequest);
    EXPECT_THROW(quarterTurn({{"direction", 1}}), BadRequest);
}

TEST(ChangedSettings, KeepUnnamedSettings) {
    Settings settings;
    settings.crop = true;
    settings.quality = 40;
    const Settings after = changed(settings, {{"colour", "bw"}, {"cleanEdges", true}});
    EXPECT_TRUE(after.crop);
    EXPECT_EQ(after.quality, 40);
    EXPECT_EQ(after.colour, host::Colour::kBlackAndWhite);
    EXPECT_TRUE(after.cleanEdges);
    EXPECT_EQ(changed(settings, {{"colour", "gray"}}).colour, host::Colour::kGrey);
    EXPECT_FALSE(after.cleanBackground);
}

TEST(ChangedSettings, RefuseInvalidValues) {
    for (const Json& settings :
         {Json{{"crop", 1}}, Json{{"look", "new"}}, Json{{"rectangle", 1}}, Json{{"colour", "red"}},
          Json{{"quality", 0}}, Json{{"quality", 101}}, Json{{"cleanBackground", "yes"}}}) {
        EXPECT_THROW(changed({}, settings), BadRequest) << settings;
    }
}

TEST(Settings, MakePagesByTheEngineUnlessStillsAreAskedFor) {
    EXPECT_TRUE(changed({}, {{"crop", true}, {"look", "photo"}}).byEngine());
    for (const char* way : {"rectangle", "cleanEdges", "cleanBackground"}) {
        EXPECT_FALSE(changed({}, {{way, true}}).byEngine()) << way;
    }
}

TEST(ChangedSettings, AreReportedAsTheyAreSet) {
    const Json settings{{"crop", true},     {"rectangle", true},  {"look", "photo"},
                        {"colour", "grey"}, {"cleanEdges", true}, {"cleanBackground", true},
                        {"quality", 12}};
    EXPECT_EQ(toJson(changed({}, settings)), settings);
}

TEST(FittedForm, IsThePagesAreaIfPossible) {
    EXPECT_EQ(fittedForm({1920, 1080}), (host::Size{1920, 1080}));
    EXPECT_EQ(fittedForm({1600, 2560}), (host::Size{1600, 2560}));
}

TEST(FittedForm, KeepsItsShapeWhenItIsTooLarge) {
    const host::Size form = fittedForm({5120, 2880});
    EXPECT_LE(form.area(), kLargestForm.area());
    EXPECT_NEAR(static_cast<double>(form.width) / form.height, 16.0 / 9, 0.01);
}

TEST(FittedForm, HasRoomForAPicture) {
    EXPECT_EQ(fittedForm({1, 1}), (host::Size{64, 64}));
    EXPECT_LE(fittedForm({100000, 100000}).area(), kLargestForm.area());
}

} // namespace doccam::serve

// Recipes in commands and topics.
#include "serve/commands/recipes.h"

#include <gtest/gtest.h>

namespace doccam::serve {
namespace {

const cv::Size kFrame(200, 100);

TEST(Recipes, ChangeByTheFieldsThatAreGiven) {
    host::Recipe before;
    before.corners = host::SheetCorners{{{0, 0}, {9, 0}, {9, 9}, {0, 9}}};
    const host::Recipe recipe =
        changed(before, {{"turn", 3}, {"look", "photo"}, {"colour", "grey"}}, kFrame);
    EXPECT_EQ(recipe.turn, 3);
    EXPECT_EQ(recipe.look, host::Look::kPhoto);
    EXPECT_EQ(recipe.colour, host::Colour::kGrey);
    EXPECT_EQ(recipe.quality, before.quality);
    EXPECT_EQ(recipe.corners, before.corners);
    EXPECT_EQ(changed(before, {{"corners", nullptr}}, kFrame).corners, std::nullopt);
}

TEST(Recipes, HaveTheirCornersInFractionsOfTheFrame) {
    const Json corners{{0, 0}, {1, 0}, {1, 1.5}, {-0.25, 1}};
    const host::Recipe recipe = changed({}, {{"corners", corners}}, kFrame);
    ASSERT_TRUE(recipe.corners);
    EXPECT_EQ(recipe.corners->at(0), cv::Point2d(-0.5, -0.5)) << "the corner of the first pixel";
    EXPECT_EQ(recipe.corners->at(2), cv::Point2d(199.5, 149.5));
    EXPECT_EQ(toJson(recipe, kFrame)["corners"].dump(),
              "[[0.0,0.0],[1.0,0.0],[1.0,1.5],[-0.25,1.0]]");
    EXPECT_TRUE(toJson(recipe, {})["corners"].is_null()) << "there is no frame";
}

TEST(Recipes, RefuseWhatIsNone) {
    for (const Json& fields :
         {Json{{"turn", 4}}, Json{{"turn", -1}}, Json{{"look", "shiny"}}, Json{{"colour", 1}},
          Json{{"quality", 0}}, Json{{"corners", 1}}, Json{{"corners", {{0, 0}, {1, 0}, {1, 1}}}},
          Json{{"corners", {{0, 0}, {1, 0}, {1, 1}, {0, 2.5}}}},
          Json{{"corners", {{0, 0}, {1, 0}, {1, 1}, {0, "1"}}}},
          Json{{"corners", {{0, 0}, {1, 0}, {1, 1}, {0}}}}}) {
        EXPECT_THROW(changed(host::Recipe(), fields, kFrame), BadRequest) << fields;
    }
}

} // namespace
} // namespace doccam::serve

// A command to doccam serve: a byte that selects the command, then its JSON body.
#include "fuzz_target.h"
#include "input.h"
#include "serve/commands/recipes.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace {

using namespace doccam;
using namespace doccam::serve;

constexpr int kMinimumSteps = -150;
constexpr int kMaximumSteps = 150;
constexpr std::size_t kLongest = 100;

void readSettings(const Json& object) {
    const Settings settings = changed({}, object);
    test::require(settings.quality >= 1 && settings.quality <= 100);
    test::require(toJson(changed({}, toJson(settings))) == toJson(settings));
}

void readForm(const Json& object) {
    const host::Size form =
        fittedForm({integer(object, "width", 1, 100000), integer(object, "height", 1, 100000)});
    test::require(form.width >= 1 && form.height >= 1 && form.area() <= kLargestForm.area());
}

void readRecipe(const Json& object) {
    const host::Recipe recipe = changed(host::Recipe(), object, {640, 480});
    test::require(recipe.turn >= 0 && recipe.turn <= 3);
    for (const cv::Point2d& corner : recipe.corners.value_or(host::SheetCorners())) {
        test::require(std::abs(corner.x) <= 1280 && std::abs(corner.y) <= 960);
    }
}

void readField(unsigned which, const Json& object) {
    switch (which % 7) {
    case 0:
        return readSettings(object);
    case 1:
        return readForm(object);
    case 2: {
        const int steps = integer(object, "steps", kMinimumSteps, kMaximumSteps);
        return test::require(steps >= kMinimumSteps && steps <= kMaximumSteps);
    }
    case 3:
        return test::require(std::abs(quarterTurn(object)) == 1);
    case 4:
        return test::require(text(object, "for", kLongest).size() <= kLongest);
    case 5:
        return test::require(integers(object, "ids", kLongest).size() <= kLongest);
    default:
        return readRecipe(object);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    test::Input input(data, size);
    const unsigned which = input.byte();
    const auto rest = input.takeRest();
    try {
        readField(which, parseBody({rest.begin(), rest.end()}));
    } catch (const BadRequest& refusal) {
        test::require(*refusal.what() != '\0');
    }
    return 0;
}

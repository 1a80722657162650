#include "serve/commands/recipes.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace doccam::serve {
namespace {

constexpr int kBestQuality = 100;
constexpr int kLastTurn = 3;
constexpr double kSteps = 1e6; // far below a pixel
// A sheet may extend beyond the frame.
constexpr double kLeast = -1;
constexpr double kMost = 2;

bool isFraction(const Json& value) {
    return value.is_number() && value.get<double>() >= kLeast && value.get<double>() <= kMost;
}

bool isPoint(const Json& value) {
    return value.is_array() && value.size() == 2 && isFraction(value[0]) && isFraction(value[1]);
}

host::SheetCorners corners(const Json& value, cv::Size frame) {
    host::SheetCorners corners;
    if (!value.is_array() || value.size() != corners.size() ||
        !std::all_of(value.begin(), value.end(), isPoint)) {
        throw BadRequest("\"corners\" must be null or four points [x, y] of numbers from -1 to 2");
    }
    std::transform(value.begin(), value.end(), corners.begin(), [&](const Json& point) {
        return cv::Point2d(point[0].get<double>() * frame.width - 0.5,
                           point[1].get<double>() * frame.height - 0.5);
    });
    return corners;
}

} // namespace

host::Recipe changed(host::Recipe recipe, const Json& object, cv::Size frame) {
    if (const auto value = object.find("corners"); value != object.end()) {
        recipe.corners = value->is_null() ? std::nullopt : std::optional(corners(*value, frame));
    }
    if (object.contains("turn")) {
        recipe.turn = integer(object, "turn", 0, kLastTurn);
    }
    if (object.contains("look")) {
        recipe.look = look(object);
    }
    if (object.contains("colour")) {
        recipe.colour = colour(object);
    }
    if (object.contains("quality")) {
        recipe.quality = integer(object, "quality", 1, kBestQuality);
    }
    return recipe;
}

Json toJson(const host::Recipe& recipe, cv::Size frame) {
    const bool hasCorners = recipe.corners && !frame.empty();
    return {{"corners", hasCorners ? inFractions(*recipe.corners, frame, kSteps) : Json()},
            {"turn", recipe.turn},
            {"look", nameOf(recipe.look)},
            {"colour", host::kColourNames.at(static_cast<std::size_t>(recipe.colour))},
            {"quality", recipe.quality}};
}

Json inFractions(const host::SheetCorners& corners, cv::Size frame, double steps) {
    const auto rounded = [steps](double fraction) { return std::round(fraction * steps) / steps; };
    Json points = Json::array();
    for (const cv::Point2d& corner : corners) {
        points.push_back(
            {rounded((corner.x + 0.5) / frame.width), rounded((corner.y + 0.5) / frame.height)});
    }
    return points;
}

} // namespace doccam::serve

#include "serve/commands/requests.h"

#include "host/texts.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace doccam::serve {
namespace {

constexpr int kSmallestFormSide = 64;
constexpr int kLongestFormSide = 8192;

const std::vector<std::string> kColours(host::kColourNames.begin(), host::kColourNames.end());

const Json& at(const Json& object, const char* field) {
    const auto found = object.find(field);
    if (found == object.end()) {
        throw BadRequest(std::string("the field \"") + field + "\" is missing");
    }
    return *found;
}

bool flag(const Json& object, const char* field, bool otherwise) {
    if (!object.contains(field)) {
        return otherwise;
    }
    if (!object.at(field).is_boolean()) {
        throw BadRequest(std::string("\"") + field + "\" must be true or false");
    }
    return object.at(field).get<bool>();
}

} // namespace

Json parseBody(const std::string& body) {
    Json object = body.empty() ? Json::object() : Json::parse(body, nullptr, false);
    if (!object.is_object()) {
        throw BadRequest("the body must be a JSON object");
    }
    return object;
}

int integer(const Json& object, const char* field, int least, int most) {
    const Json& value = at(object, field);
    const bool fits = value.is_number_integer() && value >= least && value <= most;
    if (!fits) {
        throw BadRequest(std::string("\"") + field + "\" must be a whole number from " +
                         std::to_string(least) + " to " + std::to_string(most));
    }
    return value.get<int>();
}

std::string choice(const Json& object, const char* field, const std::vector<std::string>& choices) {
    const Json& value = at(object, field);
    if (value.is_string() &&
        std::find(choices.begin(), choices.end(), value.get<std::string>()) != choices.end()) {
        return value.get<std::string>();
    }
    throw BadRequest(std::string("\"") + field + "\" must be one of: " + host::listed(choices));
}

std::string text(const Json& object, const char* field, std::size_t longest) {
    const Json& value = at(object, field);
    if (!value.is_string() || value.get_ref<const std::string&>().size() > longest) {
        throw BadRequest(std::string("\"") + field + "\" must be a text of at most " +
                         std::to_string(longest) + " bytes");
    }
    return value.get<std::string>();
}

std::vector<int> integers(const Json& object, const char* field, std::size_t most) {
    const Json& value = at(object, field);
    const bool listed = value.is_array() && value.size() <= most &&
                        std::all_of(value.begin(), value.end(), [](const Json& element) {
                            return element.is_number_integer() && element >= 0 &&
                                   element <= std::numeric_limits<int>::max();
                        });
    if (!listed) {
        throw BadRequest(std::string("\"") + field + "\" must be a list of at most " +
                         std::to_string(most) + " whole numbers");
    }
    return value.get<std::vector<int>>();
}

host::Look look(const Json& object) {
    const bool paper = choice(object, "look", {"paper", "photo"}) == "paper";
    return paper ? host::Look::kPaper : host::Look::kPhoto;
}

host::Colour colour(const Json& object) {
    const std::string name =
        at(object, "colour") == "gray" ? "grey" : choice(object, "colour", kColours);
    const auto place = std::find(kColours.begin(), kColours.end(), name) - kColours.begin();
    return static_cast<host::Colour>(place);
}

const char* nameOf(host::Look look) {
    return look == host::Look::kPaper ? "paper" : "photo";
}

int quarterTurn(const Json& object) {
    return choice(object, "direction", {"left", "right"}) == "left" ? -1 : 1;
}

Settings changed(Settings settings, const Json& object) {
    settings.rectangle = flag(object, "rectangle", settings.rectangle);
    if (object.contains("look")) {
        settings.look = look(object);
    }
    settings.crop = flag(object, "crop", settings.crop);
    settings.cleanEdges = flag(object, "cleanEdges", settings.cleanEdges);
    settings.cleanBackground = flag(object, "cleanBackground", settings.cleanBackground);
    if (object.contains("quality")) {
        settings.quality = integer(object, "quality", 1, 100);
    }
    if (object.contains("colour")) {
        settings.colour = colour(object);
    }
    return settings;
}

Json toJson(const Settings& settings) {
    return {{"crop", settings.crop},
            {"rectangle", settings.rectangle},
            {"look", nameOf(settings.look)},
            {"colour", kColours[static_cast<std::size_t>(settings.colour)]},
            {"cleanEdges", settings.cleanEdges},
            {"cleanBackground", settings.cleanBackground},
            {"quality", settings.quality}};
}

host::Size fittedForm(host::Size wanted) {
    const auto side = [](int value) {
        return std::clamp(value, kSmallestFormSide, kLongestFormSide);
    };
    const host::Size form{side(wanted.width), side(wanted.height)};
    if (form.area() <= kLargestForm.area()) {
        return form;
    }
    const double scale =
        std::sqrt(static_cast<double>(kLargestForm.area()) / static_cast<double>(form.area()));
    return {static_cast<int>(form.width * scale), static_cast<int>(form.height * scale)};
}

} // namespace doccam::serve

#include "serve/commands/commands.h"

#include "codes/symbology_names.h"
#include "host/failure.h"
#include "pictures/reading.h"
#include "serve/commands/recipes.h"
#include "serve/live/code_finder.h"

#include <doccam/codes.h>

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <limits>

namespace doccam::serve {
namespace {

constexpr int kMaximumZoomSteps = 150; // from the smallest scale to the largest
constexpr int kLongestMove = 10000;
constexpr int kLongestSide = 100000;
constexpr int kLargest = std::numeric_limits<int>::max();

const std::vector<std::string> kControls = [] {
    std::vector<std::string> names;
    names.reserve(std::size(host::kControlNames));
    for (const host::ControlName& control : host::kControlNames) {
        names.emplace_back(control.text);
    }
    return names;
}();

Json topicOf(const Page& page) {
    return {{"id", page.kept.id},
            {"version", page.version()},
            {"width", page.size.width},
            {"height", page.size.height},
            {"codes", page.kept.origin.codes},
            {"recipe", toJson(page.kept.recipe, page.frame)}};
}

Json topicOf(const std::vector<Page>& pages) {
    Json list = Json::array();
    for (const Page& page : pages) {
        list.push_back(topicOf(page));
    }
    return list;
}

int idIn(const Json& request) {
    return integer(request, "id", 1, kLargest);
}

// A short look, as the user is waiting for the page.
std::vector<std::string> codesOn(const std::string& path) {
    constexpr double kSeconds = 0.5;
    std::vector<std::string> texts;
    try {
        const cv::Mat page = host::readPicture(path, cv::IMREAD_GRAYSCALE);
        for (const host::Code& code : host::codesIn(page, DOCCAM_SYMBOLOGIES_ALL, kSeconds).codes) {
            texts.push_back(code.text);
        }
    } catch (const host::Failure&) { // the page is good without them
    }
    return texts;
}

// The first code of the kind.
std::string firstOf(const std::vector<host::Code>& codes, const std::string& kind) {
    const auto first = std::find_if(codes.begin(), codes.end(), [&](const host::Code& code) {
        return host::kindOf(code.symbology) == kind;
    });
    return first == codes.end() ? "" : first->text;
}

std::string textOf(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

const std::map<std::string, Json (Commands::*)(const Json&)> Commands::kCommands{
    {"form", &Commands::form},
    {"zoom", &Commands::zoom},
    {"move", &Commands::move},
    {"turn", &Commands::turn},
    {"settings", &Commands::settings},
    {"control", &Commands::control},
    {"focus", &Commands::focus},
    {"capture", &Commands::capture},
    {"codes", &Commands::codes},
    {"pages/order", &Commands::orderPages},
    {"pages/turn", &Commands::turnPage},
    {"pages/recipe", &Commands::changeRecipe},
    {"pages/delete", &Commands::deletePage},
    {"pages/restore", &Commands::restorePage},
};

Commands::Commands(LiveCamera& camera, PageStore& pages, EventFeed& events)
  : camera_(camera)
  , pages_(pages)
  , events_(events) {
    tellPages();
    events_.set("codes", Json::object().dump());
}

bool Commands::knows(const std::string& name) {
    return kCommands.contains(name);
}

Json Commands::run(const std::string& name, const Json& request) {
    const auto found = kCommands.find(name);
    if (found == kCommands.end()) {
        throw BadRequest("there is no such command");
    }
    return (this->*found->second)(request);
}

Json Commands::form(const Json& request) {
    camera_.setForm(
        {integer(request, "width", 1, kLongestSide), integer(request, "height", 1, kLongestSide)});
    return Json::object();
}

Json Commands::zoom(const Json& request) {
    if (!request.contains("to")) {
        camera_.zoom(integer(request, "steps", -kMaximumZoomSteps, kMaximumZoomSteps));
    } else if (choice(request, "to", {"whole", "true"}) == "true") {
        camera_.showTrueSize();
    } else {
        camera_.showWhole();
    }
    return Json::object();
}

Json Commands::move(const Json& request) {
    camera_.move(integer(request, "dx", -kLongestMove, kLongestMove),
                 integer(request, "dy", -kLongestMove, kLongestMove));
    return Json::object();
}

Json Commands::turn(const Json& request) {
    camera_.turn(quarterTurn(request));
    return Json::object();
}

Json Commands::settings(const Json& request) {
    camera_.change(changed(camera_.settings(), request));
    return camera_.settingsTopic();
}

Json Commands::control(const Json& request) {
    const std::string name = choice(request, "name", kControls);
    const bool standard = !request.contains("value");
    camera_.setControl(name, standard
                                 ? std::nullopt
                                 : std::optional(integer(request, "value", -kLargest, kLargest)));
    return Json::object();
}

Json Commands::focus(const Json& /*request*/) {
    camera_.focus();
    return Json::object();
}

Json Commands::capture(const Json& /*request*/) {
    pages_.requireRoom();
    const Page page = pages_.add(camera_.draft(pages_.folder() / "still.jpg"), codesOn);
    tellPages();
    return Json::parse(textOf({{"page", topicOf(page)}}));
}

Json Commands::codes(const Json& /*request*/) {
    const std::vector<host::Code> codes = camera_.readCodes();
    Json found{{"qr", firstOf(codes, "qr")}, {"bar", firstOf(codes, "bar")}};
    found["codes"] = Json::array();
    for (const host::Code& code : codes) {
        found["codes"].push_back(toJson(code));
    }
    const std::string text = textOf(found);
    events_.set("codes", text);
    return Json::parse(text);
}

Json Commands::orderPages(const Json& request) {
    pages_.reorder(integers(request, "ids", PageStore::kMaximumPages));
    tellPages();
    return Json::object();
}

Json Commands::turnPage(const Json& request) {
    constexpr int kWhole = 4;
    const int id = idIn(request);
    const int turn = quarterTurn(request);
    host::Recipe recipe = pages_.page(id).kept.recipe;
    recipe.turn = (recipe.turn + turn + kWhole) % kWhole;
    pages_.change(id, recipe);
    tellPages();
    return Json::object();
}

Json Commands::changeRecipe(const Json& request) {
    const Page page = pages_.page(idIn(request));
    pages_.change(page.kept.id, changed(page.kept.recipe, request, page.frame));
    tellPages();
    return Json::parse(textOf({{"page", topicOf(pages_.page(page.kept.id))}}));
}

Json Commands::deletePage(const Json& request) {
    pages_.remove(idIn(request));
    tellPages();
    return Json::object();
}

Json Commands::restorePage(const Json& request) {
    pages_.restore(idIn(request));
    tellPages();
    return Json::object();
}

void Commands::tellPages() {
    events_.set("pages", textOf(topicOf(pages_.pages())));
    events_.set("removed", textOf(topicOf(pages_.removedPages())));
}

} // namespace doccam::serve

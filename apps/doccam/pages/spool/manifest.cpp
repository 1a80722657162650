#include "pages/spool/manifest.h"

#include "documents/paper/paper_json.h"
#include "pages/spool/document_json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <set>
#include <stdexcept>

namespace doccam::host {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;
constexpr std::size_t kMostPages = 10000;
constexpr std::size_t kMostCodes = 100;
constexpr int kHighest = 1'000'000'000; // id, place or number of changes
constexpr std::array<const char*, 2> kLookNames{"photo", "paper"};
constexpr std::array<const char*, 2> kTakerNames{"scan", "serve"};

Json asJson(const Recipe& recipe) {
    Json object{{"corners", nullptr},
                {"turn", recipe.turn},
                {"look", kLookNames.at(static_cast<std::size_t>(recipe.look))},
                {"colour", kColourNames.at(static_cast<std::size_t>(recipe.colour))},
                {"quality", recipe.quality}};
    if (recipe.corners) {
        Json corners = Json::array();
        for (const cv::Point2d& corner : *recipe.corners) {
            corners.push_back({corner.x, corner.y});
        }
        object["corners"] = std::move(corners);
    }
    return object;
}

Json asJson(const std::optional<StillCleaning>& stills) {
    return stills ? Json{{"cleanEdges", stills->edges}, {"cleanBackground", stills->background}}
                  : Json();
}

Json asJson(const KeptPage& page) {
    Json codes = Json::array();
    for (const std::string& code : page.origin.codes) {
        codes.push_back(escaped(code));
    }
    Json entry{{"id", page.id},
               {"frame", page.frame},
               {"finished", page.origin.finished},
               {"cropped", page.origin.cropped},
               {"confidence", nullptr},
               {"codes", std::move(codes)},
               {"changes", page.changes},
               {"desk", page.origin.desk ? asJson(*page.origin.desk) : Json()},
               {"recipe", asJson(page.recipe)}};
    if (page.origin.confidence) {
        entry["confidence"] = *page.origin.confidence;
    }
    return entry;
}

void require(bool holds) {
    if (!holds) {
        throw std::invalid_argument("no manifest");
    }
}

int number(const Json& value, int least, int most) {
    require(value.is_number_integer());
    const auto number = value.get<std::int64_t>();
    require(number >= least && number <= most);
    return static_cast<int>(number);
}

template <typename Choice, std::size_t Count>
Choice choice(const Json& value, const std::array<const char*, Count>& names) {
    const auto found = std::find(names.begin(), names.end(), value.get<std::string>());
    require(found != names.end());
    return static_cast<Choice>(found - names.begin());
}

double coordinate(const Json& value) {
    constexpr double kFarthest = 2.0 * DOCCAM_PAGE_MAX_SIDE;
    require(value.is_number());
    const auto coordinate = value.get<double>();
    require(std::isfinite(coordinate) && std::abs(coordinate) <= kFarthest);
    return coordinate;
}

std::optional<SheetCorners> cornersIn(const Json& value) {
    if (value.is_null()) {
        return std::nullopt;
    }
    SheetCorners corners;
    require(value.is_array() && value.size() == corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        require(value[i].is_array() && value[i].size() == 2);
        corners[i] = {coordinate(value[i][0]), coordinate(value[i][1])};
    }
    return corners;
}

Recipe recipeIn(const Json& value) {
    constexpr int kBestQuality = 100;
    Recipe recipe;
    recipe.corners = cornersIn(value.at("corners"));
    recipe.turn = number(value.at("turn"), 0, 3);
    recipe.look = choice<Look>(value.at("look"), kLookNames);
    recipe.colour = choice<Colour>(value.at("colour"), kColourNames);
    recipe.quality = number(value.at("quality"), 0, kBestQuality);
    return recipe;
}

// Never a path, nor the manifest itself.
bool isFrameName(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    const std::string extension = dot == std::string::npos ? "" : name.substr(dot);
    const std::string stem = name.substr(0, dot);
    constexpr std::string_view kStart = "frame-";
    return (extension == ".jpg" || extension == ".png") && stem.starts_with(kStart) &&
           stem.size() > kStart.size() &&
           std::all_of(stem.begin() + kStart.size(), stem.end(),
                       [](unsigned char letter) { return std::isdigit(letter) != 0; });
}

// Earlier manifests lack some lists.
const Json& listIn(const Json& object, const char* name, std::size_t longest) {
    static const Json kNone = Json::array();
    const auto found = object.find(name);
    const Json& list = found == object.end() ? kNone : *found;
    require(list.is_array() && list.size() <= longest);
    return list;
}

KeptPage pageIn(const Json& value, int last) {
    KeptPage page;
    page.id = number(value.at("id"), 1, last);
    page.frame = value.at("frame").get<std::string>();
    require(isFrameName(page.frame));
    page.recipe = recipeIn(value.at("recipe"));
    page.origin.finished = value.at("finished").get<bool>();
    page.origin.cropped = value.at("cropped").get<bool>();
    if (const Json& confidence = value.at("confidence"); !confidence.is_null()) {
        page.origin.confidence = confidence.get<double>();
    }
    for (const Json& code : listIn(value, "codes", kMostCodes)) {
        page.origin.codes.push_back(unescaped(code.get<std::string>()));
    }
    page.changes = value.contains("changes") ? number(value.at("changes"), 0, kHighest) : 0;
    // Earlier manifests lack the entry, as they do that of the paper.
    if (const auto desk = value.find("desk"); desk != value.end() && !desk->is_null()) {
        page.origin.desk = deskIn(*desk);
    }
    return page;
}

// Earlier manifests lack the entry; whole frames were stills then.
std::optional<StillCleaning> stillsIn(const Json& manifest, bool wholeFrame) {
    const auto stills = manifest.find("stills");
    if (stills == manifest.end()) {
        return wholeFrame ? std::optional(StillCleaning()) : std::nullopt;
    }
    if (stills->is_null()) {
        return std::nullopt;
    }
    return StillCleaning{.edges = stills->at("cleanEdges").get<bool>(),
                         .background = stills->at("cleanBackground").get<bool>()};
}

// Each id and each frame is one page's.
void requireDifferent(const Manifest& manifest) {
    std::set<int> ids;
    std::set<std::string> frames;
    const auto note = [&](const KeptPage& page) {
        require(ids.insert(page.id).second && frames.insert(page.frame).second);
    };
    std::for_each(manifest.pages.begin(), manifest.pages.end(), note);
    for (const RemovedPage& one : manifest.removed) {
        note(one.page);
    }
}

Manifest manifestIn(const Json& value) {
    require(value.at("version") == kVersion);
    Manifest manifest;
    if (const auto taker = value.find("taker"); taker != value.end()) {
        manifest.plan.taker = choice<PageTaker>(*taker, kTakerNames);
    }
    manifest.plan.target = unescaped(value.at("target").get<std::string>());
    require(manifest.plan.target.find('\0') == std::string::npos);
    manifest.plan.wholeFrame = value.at("wholeFrame").get<bool>();
    manifest.plan.recipe = recipeIn(value.at("recipe"));
    manifest.plan.stills = stillsIn(value, manifest.plan.wholeFrame);
    if (const auto paper = value.find("paper"); paper != value.end()) {
        manifest.plan.paper = paperOptionsIn(*paper);
    }
    if (const auto document = value.find("document"); document != value.end()) {
        manifest.plan.document = documentOptionsIn(*document);
    }
    require(value.at("saved").is_number_integer());
    manifest.saved = value.at("saved").get<std::int64_t>();
    manifest.last = number(value.at("last"), 0, kHighest);
    require(value.contains("pages"));
    for (const Json& entry : listIn(value, "pages", kMostPages)) {
        manifest.pages.push_back(pageIn(entry, manifest.last));
    }
    for (const Json& entry : listIn(value, "removed", kMostPages)) {
        manifest.removed.push_back(
            {.page = pageIn(entry.at("page"), manifest.last),
             .place = static_cast<std::size_t>(number(entry.at("place"), 0, kHighest))});
    }
    requireDifferent(manifest);
    return manifest;
}

} // namespace

std::string textOf(const Manifest& manifest) {
    Json pages = Json::array();
    for (const KeptPage& page : manifest.pages) {
        pages.push_back(asJson(page));
    }
    Json removed = Json::array();
    for (const RemovedPage& one : manifest.removed) {
        removed.push_back({{"place", one.place}, {"page", asJson(one.page)}});
    }
    const Json object{{"version", kVersion},
                      {"taker", kTakerNames.at(static_cast<std::size_t>(manifest.plan.taker))},
                      {"target", escaped(manifest.plan.target)},
                      {"wholeFrame", manifest.plan.wholeFrame},
                      {"recipe", asJson(manifest.plan.recipe)},
                      {"stills", asJson(manifest.plan.stills)},
                      {"paper", asJson(manifest.plan.paper)},
                      {"document", asJson(manifest.plan.document)},
                      {"saved", manifest.saved},
                      {"last", manifest.last},
                      {"pages", std::move(pages)},
                      {"removed", std::move(removed)}};
    return object.dump(1) + "\n";
}

std::optional<Manifest> parseManifest(std::string_view text) {
    try {
        return manifestIn(Json::parse(text));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::string frameName(int number, const std::string& extension) {
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "frame-%06d%s", number, extension.c_str());
    return name.data();
}

} // namespace doccam::host

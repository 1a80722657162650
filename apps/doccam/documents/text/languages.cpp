#include "documents/text/languages.h"

#include "host/failure.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace doccam::host {
namespace {

constexpr std::string_view kScript = "script/";
constexpr std::string_view kVertical = "_vert";

// Packages of scripts are named by the codes of ISO 15924.
constexpr auto kScripts = std::to_array<std::pair<std::string_view, std::string_view>>(
    {{"Arabic", "arab"},    {"Armenian", "armn"},   {"Bengali", "beng"},
     {"Cherokee", "cher"},  {"Cyrillic", "cyrl"},   {"Devanagari", "deva"},
     {"Ethiopic", "ethi"},  {"Fraktur", "frak"},    {"Georgian", "geor"},
     {"Greek", "grek"},     {"Gujarati", "gujr"},   {"Gurmukhi", "guru"},
     {"HanS", "hans"},      {"HanT", "hant"},       {"Hangul", "hang"},
     {"Hebrew", "hebr"},    {"Japanese", "jpan"},   {"Kannada", "knda"},
     {"Khmer", "khmr"},     {"Lao", "laoo"},        {"Latin", "latn"},
     {"Malayalam", "mlym"}, {"Myanmar", "mymr"},    {"Oriya", "orya"},
     {"Sinhala", "sinh"},   {"Syriac", "syrc"},     {"Tamil", "taml"},
     {"Telugu", "telu"},    {"Thaana", "thaa"},     {"Thai", "thai"},
     {"Tibetan", "tibt"},   {"Vietnamese", "viet"}, {"Canadian_Aboriginal", "cans"}});

bool isInNames(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '_' || letter == '/';
}

std::string codeOf(const std::string& script) {
    const auto known = std::find_if(kScripts.begin(), kScripts.end(),
                                    [&](const auto& pair) { return pair.first == script; });
    return known == kScripts.end() ? script : std::string(known->second);
}

// Debian's names have neither underscores nor capitals.
std::string debianName(std::string name) {
    std::replace(name.begin(), name.end(), '_', '-');
    std::transform(name.begin(), name.end(), name.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return name;
}

} // namespace

std::vector<std::string> languagesIn(const std::string& names) {
    std::vector<std::string> languages;
    for (std::size_t begin = 0; !names.empty() && begin <= names.size();) {
        const std::size_t end = std::min(names.find('+', begin), names.size());
        const std::string name = names.substr(begin, end - begin);
        if (name.empty() || !std::all_of(name.begin(), name.end(), isInNames)) {
            throw Failure(kUsage, "The languages \"" + names +
                                      "\" cannot be recognized; name them like eng or eng+deu.");
        }
        if (std::find(languages.begin(), languages.end(), name) == languages.end()) {
            languages.push_back(name);
        }
        begin = end + 1;
    }
    return languages;
}

bool mayBePackaged(const std::string& language) {
    constexpr std::size_t kLetters = 3;
    const std::string letters = language.substr(0, kLetters);
    return language.starts_with(kScript) ||
           (letters.size() == kLetters &&
            std::all_of(letters.begin(), letters.end(),
                        [](char letter) { return letter >= 'a' && letter <= 'z'; }) &&
            (language.size() == kLetters || language[kLetters] == '_'));
}

std::string packageOf(const std::string& language) {
    if (!language.starts_with(kScript)) {
        return "tesseract-ocr-" + debianName(language);
    }
    std::string script = language.substr(kScript.size());
    const bool isVertical = script.ends_with(kVertical);
    if (isVertical) {
        script.resize(script.size() - kVertical.size());
    }
    return "tesseract-ocr-script-" + debianName(codeOf(script)) + (isVertical ? "-vert" : "");
}

} // namespace doccam::host

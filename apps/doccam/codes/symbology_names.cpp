#include "codes/symbology_names.h"

#include <doccam/codes.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace doccam::host {
namespace {

constexpr unsigned kQr = unsigned{DOCCAM_QR} | DOCCAM_MICRO_QR;

// In the order in which a symbology's kind is looked for.
constexpr std::array<std::pair<const char*, unsigned>, 4> kGroups{{
    {"qr", kQr},
    {"bar", DOCCAM_SYMBOLOGIES_LINEAR},
    {"matrix", DOCCAM_SYMBOLOGIES_MATRIX & ~kQr},
    {"any", DOCCAM_SYMBOLOGIES_ALL},
}};

std::string lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return result;
}

std::string compared(std::string_view name) {
    std::string letters = lower(name);
    std::erase_if(letters, [](char letter) { return letter == ' ' || letter == '-'; });
    return letters;
}

std::vector<std::pair<std::string, unsigned>> namedSets() {
    std::vector<std::pair<std::string, unsigned>> sets(kGroups.begin(), kGroups.end());
    for (unsigned bit = 1; (bit & DOCCAM_SYMBOLOGIES_ALL) != 0; bit <<= 1U) {
        sets.emplace_back(nameOf(static_cast<int>(bit)), bit);
    }
    return sets;
}

} // namespace

const char* kindOf(int symbology) {
    const auto group = std::find_if(kGroups.begin(), kGroups.end(), [&](const auto& one) {
        return (one.second & static_cast<unsigned>(symbology)) != 0;
    });
    return group == kGroups.end() ? "" : group->first;
}

std::string nameOf(int symbology) {
    const char* const known = doccam_symbology_name(symbology);
    std::string name = lower(known != nullptr ? known : "");
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

std::vector<std::string> symbologyNames() {
    std::vector<std::string> names;
    for (const auto& [name, set] : namedSets()) {
        names.push_back(name);
    }
    return names;
}

std::optional<unsigned> symbologiesIn(std::string_view list) {
    const auto sets = namedSets();
    unsigned wanted = 0;
    for (std::size_t begin = 0; begin <= list.size();) {
        const std::size_t end = std::min(list.find(',', begin), list.size());
        const std::string name = compared(list.substr(begin, end - begin));
        const auto set = std::find_if(sets.begin(), sets.end(),
                                      [&](const auto& one) { return compared(one.first) == name; });
        if (set == sets.end()) {
            return std::nullopt;
        }
        wanted |= set->second;
        begin = end + 1;
    }
    return wanted;
}

} // namespace doccam::host

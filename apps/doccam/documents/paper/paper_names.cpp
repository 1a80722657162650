#include "documents/paper/paper_names.h"

#include "host/texts.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace doccam::host {
namespace {

std::optional<double> parseWithin(std::string_view text, double least, double most) {
    const auto number = parseNumber<double>(text);
    return number && *number >= least && *number <= most ? number : std::nullopt;
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

} // namespace

const std::vector<NamedPaper>& namedPapers() {
    static const std::vector<NamedPaper> kPapers{
        {"a3", {297, 420}},         {"a4", {210, 297}},        {"a5", {148, 210}},
        {"letter", {215.9, 279.4}}, {"legal", {215.9, 355.6}}, {"id1", {85.6, 53.98}}};
    return kPapers;
}

std::optional<Millimetres> parsePaper(const std::string& text) {
    const std::string name = lowerCase(text);
    for (const NamedPaper& paper : namedPapers()) {
        if (name == paper.name) {
            return paper.size;
        }
    }
    const std::string_view whole = name;
    const auto cross = whole.find('x');
    if (cross == std::string_view::npos) {
        return std::nullopt;
    }
    const auto width = parseWithin(whole.substr(0, cross), kShortestSide, kLongestSide);
    const auto height = parseWithin(whole.substr(cross + 1), kShortestSide, kLongestSide);
    return width && height ? std::optional(Millimetres{*width, *height}) : std::nullopt;
}

std::string paperText(Millimetres paper) {
    for (const NamedPaper& named : namedPapers()) {
        if (paper == named.size || paper == turned(named.size, 1)) {
            return named.name;
        }
    }
    std::ostringstream text;
    text << paper.width << 'x' << paper.height;
    return text.str();
}

std::optional<double> parseDpi(const std::string& text) {
    return parseWithin(text, kLowestDpi, kHighestDpi);
}

Millimetres turnedLike(double proportions, Millimetres paper) {
    const bool lies = proportions > 1;
    return lies == (paper.width > paper.height) ? paper : turned(paper, 1);
}

} // namespace doccam::host

#include "code_texts.h"

#include "code_drawing.h"

#include <array>

namespace doccam::test {

namespace {

constexpr char kSeparator = '\x1d';

std::string randomOf(cv::RNG& random, const std::string& letters, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text +=
            letters[static_cast<std::size_t>(random.uniform(0, static_cast<int>(letters.size())))];
    }
    return text;
}

GS1Element randomItem(cv::RNG& random) {
    return {"01", withCheckDigit("9" + randomDigits(random, 12))};
}

} // namespace

std::string randomDigits(cv::RNG& random, int count) {
    return randomOf(random, "0123456789", count);
}

std::string randomCapitals(cv::RNG& random, int count) {
    return randomOf(random, "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789", count);
}

std::string randomLink(cv::RNG& random) {
    return "https://example.org/page/" + randomOf(random, "abcdefghijkmnpqrstuvwxyz23456789", 8);
}

std::string randomProse(cv::RNG& random, int count) {
    static const std::array<std::string, 12> kWords = {"sheet",  "desk",  "lamp",   "page",
                                                       "letter", "table", "order",  "number",
                                                       "date",   "name",  "street", "total"};
    std::string text = "No. " + randomDigits(random, 6);
    while (static_cast<int>(text.size()) < count) {
        text += ' ' + kWords[static_cast<std::size_t>(random.uniform(0, 12))];
        text += random.uniform(0, 3) == 0 ? " " + randomDigits(random, 3) : "";
    }
    return text;
}

GS1Elements randomBatch(cv::RNG& random) {
    return {randomItem(random),
            {"10", randomCapitals(random, random.uniform(5, 9)), true},
            {"21", randomDigits(random, 6), true}};
}

GS1Elements randomWeight(cv::RNG& random) {
    return {randomItem(random), {"3103", "00" + randomDigits(random, 4)}};
}

std::string toZint(const GS1Elements& elements) {
    std::string text;
    for (const GS1Element& element : elements) {
        text += '[' + element.identifier + ']' + element.value;
    }
    return text;
}

std::vector<std::string> readForms(const GS1Elements& elements) {
    std::string plain;
    std::string readable;
    for (const GS1Element& element : elements) {
        plain += element.identifier + element.value;
        readable += '(' + element.identifier + ')' + element.value;
        if (element.isVariable && &element != &elements.back()) {
            plain += kSeparator;
        }
    }
    return {plain, readable};
}

} // namespace doccam::test

// Texts for codes, different each time.
#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <utility>
#include <vector>

namespace doccam::test {

std::string randomDigits(cv::RNG& random, int count);

// Capital letters and digits.
std::string randomCapitals(cv::RNG& random, int count);

// An address of a page.
std::string randomLink(cv::RNG& random);

// Words with a length of about count bytes.
std::string randomProse(cv::RNG& random, int count);

// Application identifiers with their values. A value of variable length that is not the last one is
// followed by a separator.
struct GS1Element {
    std::string identifier, value;
    bool isVariable = false;
};

using GS1Elements = std::vector<GS1Element>;

// An item number and a batch; an item number, a weight and a date.
GS1Elements randomBatch(cv::RNG& random);
GS1Elements randomWeight(cv::RNG& random);

// As zint expects them, in square brackets.
std::string toZint(const GS1Elements& elements);

// With the separator's byte, and with parentheses: what readers make of them.
std::vector<std::string> readForms(const GS1Elements& elements);

} // namespace doccam::test

// Series of pictures of codes, growing from easy to hard with the sample's number.
#pragma once

#include "code_kinds.h"
#include "code_shots.h"

#include <opencv2/core/mat.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace doccam::test {

enum class Company { kNone, kSameKind, kOtherKinds };

struct CodeSeries {
    std::string name;
    int samples = 10;
    std::function<Shot(int sample, cv::RNG& random)> shot = {};
    Company company = Company::kNone;
    bool matrixOnly = false;
    bool photographed = false; // belongs to the table of photographs
};

const std::vector<CodeSeries>& codeSeries();

// A picture and what is in it.
struct CodePicture {
    cv::Mat grey;
    std::vector<PrintedCode> counted; // of the kind
    std::vector<PrintedCode> others;
};

// The same picture for the same kind, series, sample and seed.
CodePicture drawCodePicture(const CodeKind& kind, const CodeSeries& series, int sample,
                            std::uint64_t seed);

} // namespace doccam::test

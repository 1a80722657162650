// What readers report of a picture, compared with what is in it.
#pragma once

#include "code_readers.h"
#include "code_series.h"

#include <array>
#include <string>
#include <vector>

namespace doccam::test {

struct ReaderTally {
    int read = 0;  // codes of the kind, with their add-ons
    int wrong = 0; // texts or add-ons that are not in the picture
    int twice = 0; // codes that have been reported before

    ReaderTally& operator+=(const ReaderTally& other);
    bool operator==(const ReaderTally&) const = default;
};

// A code reported without its add-on counts neither as read nor as wrong.
ReaderTally compare(const CodePicture& picture, const std::vector<ReportedCode>& reported);

enum CodeReader { kZbar, kZxing, kDoccam, kCodeReaders };

struct CodeCell {
    int codes = 0;
    std::array<ReaderTally, kCodeReaders> readers;

    CodeCell& operator+=(const CodeCell& other);
};

// What is wrong with the library's part of the cell, empty for nothing: fewer read than by the
// better reader, something wrong, or something twice.
std::string complaint(const CodeCell& cell);

} // namespace doccam::test

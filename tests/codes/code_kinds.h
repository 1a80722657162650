// The kinds of code that zint draws and zbar or ZXing reads, with texts that differ each time.
#pragma once

#include "code_drawing.h"

#include <opencv2/core.hpp>

#include <functional>
#include <string>
#include <vector>

namespace doccam::test {

// A code, and what a reader may report of it.
struct PrintedCode {
    Code code;
    std::vector<std::string> texts; // readers write GS1 elements, UPC-A and Codabar in several ways
    std::string addon = {};         // empty for a code without
    int scale = 8;                  // pixels per module that drawCode is asked for
    int module = 8;                 // and those that it then draws
};

struct CodeKind {
    std::string name;
    bool isMatrix = false;
    std::function<PrintedCode(cv::RNG&)> make;
};

// In the order of the table.
const std::vector<CodeKind>& codeKinds();

// The parts of that list.
std::vector<CodeKind> matrixCodeKinds();
std::vector<CodeKind> linearCodeKinds();

} // namespace doccam::test

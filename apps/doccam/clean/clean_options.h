// What doccam clean is asked for.
#pragma once

#include "documents/paper/page_sizing.h"
#include "pages/recipe.h"

#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

struct CleanOptions {
    std::vector<std::string> files;
    std::string folder;
    std::string target; // of the only file; empty: named after it
    bool inPlace = false;
    bool edges = false;
    bool background = false;
    bool brightSheet = false;
    Crop crop = Crop::kNone;
    bool each = false;
    std::optional<Look> look;
    std::optional<Colour> colour;
    PaperOptions paper;
    int quality = 95;
    bool force = false;
};

// Throws Failure for options that exclude each other.
void refuseContradictions(const CleanOptions& options);

// Whether the page engine makes the pages.
bool byPageEngine(const CleanOptions& options);

// Whether it makes pages of sheets, not of whole pictures.
bool wantsSheet(const CleanOptions& options);

// Where file's picture is written: beside it as NAME-clean, into the folder, or in its place.
std::string targetOf(const std::string& file, const CleanOptions& options);

// The same for one of several sheets, numbered from 1.
std::string numberedTarget(const std::string& target, int number);

} // namespace doccam::host

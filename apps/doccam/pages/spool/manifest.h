// The list of a document's pages, as it is kept beside their frames.
#pragma once

#include "documents/document_options.h"
#include "documents/paper/desk.h"
#include "documents/paper/page_sizing.h"
#include "pages/recipe.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace doccam::host {

// What is known of a page besides its recipe.
struct PageOrigin {
    bool finished = false;              // the frame is the page already, whatever the recipe
    bool cropped = false;               // and shows a sheet
    std::optional<double> confidence{}; // of the sheet that was found, 0 to 1
    std::vector<std::string> codes{};   // texts of the codes on it
    std::optional<Desk> desk{};         // in the frame, of a camera that was calibrated
};

struct KeptPage {
    int id = 0;          // never reused in its document
    std::string frame{}; // its file's name
    Recipe recipe{};
    PageOrigin origin{};
    int changes = 0; // of its recipe, so far
};

// How stills of the library become pages.
struct StillCleaning {
    bool edges = false;
    bool background = false;
};

// A page that can be restored.
struct RemovedPage {
    KeptPage page;
    std::size_t place = 0; // where it was, from 0
};

// The command that takes a document's pages, and goes on with it.
enum class PageTaker { kScan, kServe };

// What is wanted of a document.
struct DocumentPlan {
    PageTaker taker = PageTaker::kScan;
    std::string target{};    // the file to write, an absolute path; empty: not yet named
    bool wholeFrame = false; // pages of whole frames
    Recipe recipe{};         // of its next pages, but for the corners
    std::optional<StillCleaning> stills{}; // its next pages are stills; none: by the page engine
    PaperOptions paper{};                  // of all its pages
    DocumentOptions document{};            // but for the paper
};

struct Manifest {
    DocumentPlan plan;
    std::int64_t saved =
        0;        // when it was saved, in seconds since 1970; 0: not since its last change
    int last = 0; // the largest number that an id or a frame has ever had
    std::vector<KeptPage> pages{};      // in the user's order
    std::vector<RemovedPage> removed{}; // the one removed last is the last
};

std::string textOf(const Manifest& manifest);

// None for damaged text, and for anything that textOf() would not have written.
std::optional<Manifest> parseManifest(std::string_view text);

// "frame-000012.jpg"
std::string frameName(int number, const std::string& extension);

} // namespace doccam::host

// What doccam scan is asked for.
#pragma once

#include "camera/cameras.h"
#include "camera/page_settings.h"
#include "pages/spool/manifest.h"
#include "scan/page_source.h"
#include "scan/scanning.h"

#include <optional>
#include <set>
#include <string>

namespace doccam::host {

struct ScanOptions {
    PageSettings page;
    PaperOptions paper;
    DocumentOptions document; // but for the paper
    ScanPlan plan;
    Crop crop = Crop::kNone;
    std::optional<Look> look;
    std::string target;
    bool targetPasses = false; // it is for standard output, and nothing to remember
    bool force = false;
    bool resume = false;
    bool noSpool = false;
    std::set<std::string> given; // of --rotate, --colour, --quality and the document's options

    // Whether the page engine makes the pages; otherwise they are the library's stills.
    bool byEngine() const;

    PageWay way() const;

    // What the document is to know; its target is absolute.
    DocumentPlan documentPlan() const;

    // Leaves defaults that contradict what is said. A resumed document has its own way, not theirs.
    void prefer(const ScanOptions& said);

    // Takes from the plan of a document what was not given.
    void adopt(const DocumentPlan& known);

  private:
    void adoptMaker(const DocumentPlan& known);
};

// Throws Failure for options that exclude each other.
void refuseContradictions(const ScanOptions& options);

} // namespace doccam::host

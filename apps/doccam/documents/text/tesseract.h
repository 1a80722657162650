// The program tesseract.
#pragma once

#include "documents/text/program_run.h"

#include <opencv2/core.hpp>

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace doccam::host {

// A grey picture in a file.
struct GreyFile {
    std::string path;
    double dpi = 0; // 0 if unknown
};

// Writes the grey picture as PGM. Throws Failure.
void writeGrey(const std::string& path, const cv::Mat& grey);

// What it does not do within ten minutes of processor time counts as failed. Its functions throw
// Interruption. Any thread.
class Tesseract {
  public:
    // The one in PATH, if there is one.
    static std::optional<Tesseract> find(const Interrupt& interrupt);

    // The languages and scripts that it knows, and "osd" if it knows which way up pages are.
    std::set<std::string> languages() const;

    // What it says about the way up of a page; nothing if it sees too little print.
    std::string orientation(const GreyFile& page) const;

    // Writes the words that it sees as stem + ".pdf", invisible on one page, and as stem + ".txt".
    ProgramEnd read(const GreyFile& page, const std::vector<std::string>& languages,
                    const std::string& stem) const;

  private:
    Tesseract(std::string path, const Interrupt& interrupt)
      : path_(std::move(path))
      , interrupt_(&interrupt) {}

    ProgramResult run(std::vector<std::string> arguments) const;
    ProgramResult run(const GreyFile& page, std::vector<std::string> arguments) const;

    std::string path_;
    const Interrupt* interrupt_;
};

} // namespace doccam::host

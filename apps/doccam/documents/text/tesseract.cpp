#include "documents/text/tesseract.h"

#include "host/failure.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

namespace doccam::host {
namespace {

// Two hundred times what a page of small print takes.
constexpr std::chrono::minutes kProcessorTime{10};

// Outside of this range the program would use others; without, it estimates.
std::vector<std::string> densityOf(const GreyFile& page) {
    constexpr double kMinimum = 70;
    constexpr double kMaximum = 2400;
    if (!(page.dpi > 0)) {
        return {};
    }
    return {"--dpi", std::to_string(std::lround(std::clamp(page.dpi, kMinimum, kMaximum)))};
}

std::string joined(const std::vector<std::string>& names) {
    std::string all;
    for (const std::string& name : names) {
        all += (all.empty() ? "" : "+") + name;
    }
    return all;
}

} // namespace

void writeGrey(const std::string& path, const cv::Mat& grey) {
    std::ofstream file(path, std::ios::binary);
    file << "P5\n" << grey.cols << ' ' << grey.rows << "\n255\n";
    for (int y = 0; y < grey.rows; ++y) {
        file.write(grey.ptr<char>(y), grey.cols);
    }
    file.close();
    if (!file) {
        throw Failure(kFileFailed, path + " cannot be written; make room on the disk.");
    }
}

std::optional<Tesseract> Tesseract::find(const Interrupt& interrupt) {
    const auto path = findProgram("tesseract");
    return path ? std::optional(Tesseract(*path, interrupt)) : std::nullopt;
}

// A thread of its own for each page takes a fraction of the time of several threads for one.
ProgramResult Tesseract::run(std::vector<std::string> arguments) const {
    return runProgram({.path = path_,
                       .arguments = std::move(arguments),
                       .environment = {"OMP_THREAD_LIMIT=1"},
                       .processorTime = kProcessorTime},
                      *interrupt_);
}

ProgramResult Tesseract::run(const GreyFile& page, std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), page.path);
    const std::vector<std::string> density = densityOf(page);
    arguments.insert(arguments.end(), density.begin(), density.end());
    return run(std::move(arguments));
}

std::set<std::string> Tesseract::languages() const {
    std::istringstream lines(run({"--list-langs"}).output);
    std::set<std::string> languages;
    for (std::string line; std::getline(lines, line);) {
        languages.insert(line); // and the line before, which is no language's name
    }
    return languages;
}

std::string Tesseract::orientation(const GreyFile& page) const {
    return run(page, {"-", "--psm", "0"}).output;
}

ProgramEnd Tesseract::read(const GreyFile& page, const std::vector<std::string>& languages,
                           const std::string& stem) const {
    // By variables: the usual "pdf" might also be a file in the current folder.
    return run(page, {stem, "-l", joined(languages), "-c", "textonly_pdf=1", "-c",
                      "tessedit_create_pdf=1", "-c", "tessedit_create_txt=1"})
        .end;
}

} // namespace doccam::host

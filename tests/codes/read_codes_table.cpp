// Reads pictures of codes with zbar, with ZXing and with the library, prints the tables, and fails
// where the library reads fewer codes of a cell than the better of the two, or something wrong.
#include "codes_table.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using doccam::test::CodeMeasure;
using doccam::test::CodesTable;
using doccam::test::CodeTask;
using doccam::test::MeasureOptions;

struct GatePicture {
    const char* kind;
    const char* series;
    int sample;
};

// What a gate has time for. The library reads all codes of these pictures.
constexpr GatePicture kGate[] = {
    {"QR", "small", 3},
    {"Micro QR", "plain", 0},
    {"Data Matrix", "rotated", 2},
    {"Data Matrix, GS1", "textured page", 1},
    {"Aztec, compact", "plain", 0},
    {"PDF417", "unevenly lit", 3},
    {"MaxiCode", "plain", 1},
    {"Code 128", "several of the kind", 2},
    {"Data Matrix", "perspective", 2},
    {"EAN-13 + 5", "textured page", 0},
    {"UPC-E", "rotated", 1},
    {"Code 39", "several kinds", 1},
    {"DataBar Expanded", "plain", 3},
    {"DataBar Expanded", "several of the kind", 1},
    {"EAN-13 + 5", "several of the kind", 2},
    {"EAN-8", "blurred", 3},
    {"UPC-A + 5", "several of the kind", 3},
    {"QR", "glare", 1},
    {"EAN-13", "can", 1},
};

std::vector<CodeTask> gateTasks() {
    std::vector<CodeTask> tasks;
    for (const GatePicture& picture : kGate) {
        const std::vector<CodeTask> all = doccam::test::codeTasks({picture.kind}, {picture.series});
        tasks.push_back(all.at(static_cast<std::size_t>(picture.sample)));
    }
    return tasks;
}

std::vector<std::string> gateFailures(const std::vector<CodeTask>& tasks,
                                      const std::vector<CodeMeasure>& measures) {
    std::vector<std::string> failures;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        const auto& cell = measures[i].cell;
        const auto& ours = cell.readers[doccam::test::kDoccam];
        if (ours.read < cell.codes || ours.wrong > 0 || ours.twice > 0) {
            failures.push_back(tasks[i].kind->name + ", " + tasks[i].series->name + ": " +
                               std::to_string(ours.read) + " of " + std::to_string(cell.codes) +
                               " read, " + std::to_string(ours.wrong) + " wrong, " +
                               std::to_string(ours.twice) + " twice");
        }
    }
    return failures;
}

void printTimes(const std::vector<CodeMeasure>& measures) {
    std::array<double, doccam::test::kCodeReaders> sums{};
    double longest = 0;
    for (const CodeMeasure& measure : measures) {
        for (std::size_t i = 0; i < sums.size(); ++i) {
            sums[i] += measure.seconds[i];
        }
        longest = std::max(longest, measure.seconds[doccam::test::kDoccam]);
    }
    std::cerr << measures.size() << " pictures; seconds: zbar " << sums[doccam::test::kZbar]
              << ", ZXing " << sums[doccam::test::kZxing] << ", doccam "
              << sums[doccam::test::kDoccam] << ", at most " << longest << " for one\n";
}

int report(const CodesTable& table, const std::vector<std::string>& failures) {
    std::cout << table.text(false);
    const std::string photographed = table.text(true);
    if (!photographed.empty()) {
        std::cout << '\n' << photographed;
    }
    std::cout << std::flush;
    for (const std::string& failure : failures) {
        std::cerr << "below the bounds: " << failure << '\n';
    }
    return failures.empty() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Compares which codes zbar, ZXing and doccam read.");
    MeasureOptions options;
    std::vector<std::string> kinds;
    std::vector<std::string> series;
    bool gate = false;
    // Names have commas.
    app.add_option("--kind", kinds, "only this kind; may be repeated")->allow_extra_args(false);
    app.add_option("--series", series, "only this series; may be repeated")
        ->allow_extra_args(false);
    app.add_option("--seed", options.seed, "of the texts and pictures")->capture_default_str();
    app.add_option("--seconds", options.seconds, "that doccam may take for a picture")
        ->capture_default_str();
    app.add_option("--jobs", options.jobs, "threads")->capture_default_str();
    app.add_option("--keep", options.keep, "a folder for pictures that doccam reads badly");
    app.add_flag("--gate", gate, "a few pictures, of which all codes must be read");
    CLI11_PARSE(app, argc, argv);
    try {
        if (!options.keep.empty()) {
            std::filesystem::create_directories(options.keep);
        }
        const std::vector<CodeTask> tasks =
            gate ? gateTasks() : doccam::test::codeTasks(kinds, series);
        if (tasks.empty()) {
            throw std::runtime_error("no such kind or series");
        }
        const std::vector<CodeMeasure> measures = doccam::test::measureCodes(tasks, options);
        printTimes(measures);
        const CodesTable table(tasks, measures);
        return report(table, gate ? gateFailures(tasks, measures) : table.failures());
    } catch (const std::exception& error) {
        std::cerr << "read_codes_table: " << error.what() << '\n';
        return 2;
    }
}

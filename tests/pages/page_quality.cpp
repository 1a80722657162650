// Measures the page engine over drawn frames and marked photographs, prints the table, and fails if
// a bound does not hold.
#include "marked_photographs.h"
#include "measures.h"
#include "overlap.h"
#include "page_engine.h"
#include "picture/jpeg.h"
#include "quality_table.h"
#include "scene/frames/drawn_frame.h"

#include <CLI/CLI.hpp>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using doccam::test::QualityTable;
using doccam::virtualcam::DrawnFrame;

// What a gate has time for: a frame of each difficulty.
const std::vector<std::string> kGate = {"desk-white", "desk-cloth", "hand-shadow", "folded-corner",
                                        "finger",     "receipt",    "several",     "empty-wood",
                                        "pale",       "pictures",   "reversed",    "highlighter"};

// Words are read where a whole page of prose is in view and nothing hides its print.
bool isRead(const std::string& category) {
    static const std::vector<std::string> kUnread = {
        "banknote", "card",  "cut-side", "finger",    "folded-corner",
        "glare",    "mixed", "receipt",  "ruled-pad", "several"};
    return std::find(kUnread.begin(), kUnread.end(), category) == kUnread.end();
}

void measureFrame(QualityTable& table, const std::string& category, std::uint64_t seed,
                  const std::string& keep) {
    const DrawnFrame frame = doccam::virtualcam::drawFrame(category, seed);
    const cv::Mat sent = cv::imdecode(
        doccam::virtualcam::encodeJpeg(frame.picture, frame.jpegQuality), cv::IMREAD_COLOR);
    if (!keep.empty()) {
        cv::imwrite(keep + "/" + category + "-" + std::to_string(seed) + ".jpg", sent);
    }
    table.add(category, doccam::test::measure(frame, sent, isRead(category), keep));
}

void measurePhotographs(QualityTable& table) {
    for (const auto& photograph : doccam::test::markedPhotographs()) {
        const auto found = doccam::test::findSheets(photograph.picture);
        const double overlap =
            found.empty() ? 0
                          : doccam::test::overlap(doccam::test::cornersOf(found.front()),
                                                  photograph.corners, photograph.picture.size());
        table.addPhotograph(photograph.name, overlap);
    }
}

int report(const QualityTable& table, doccam::test::Means means) {
    std::cout << table.text() << std::flush;
    const std::vector<std::string> failures = table.failures(means);
    for (const std::string& failure : failures) {
        std::cout << "beyond its bound: " << failure << '\n';
    }
    return failures.empty() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Measures the page engine over drawn frames and marked photographs.");
    std::vector<std::string> categories = doccam::virtualcam::frameCategories();
    std::uint64_t first = 1;
    std::uint64_t count = 20;
    std::string keep;
    bool gate = false;
    app.add_option("--category", categories, "only these")->delimiter(',');
    app.add_option("--first", first, "the first seed");
    app.add_option("--count", count, "seeds of each category");
    app.add_option("--keep", keep, "a folder for frames and pages");
    app.add_flag("--gate", gate, "one frame of each of twelve categories");
    CLI11_PARSE(app, argc, argv);
    if (gate) {
        categories = kGate;
        count = 1;
    }
    try {
        if (!keep.empty()) {
            std::filesystem::create_directories(keep);
        }
        QualityTable table;
        for (const std::string& category : categories) {
            for (std::uint64_t seed = first; seed < first + count; ++seed) {
                measureFrame(table, category, seed, keep);
                std::cerr << category << ' ' << seed << std::endl;
            }
        }
        measurePhotographs(table);
        using doccam::test::Means;
        return report(table, gate ? Means::kOfAll : Means::kOfEachCategory);
    } catch (const std::exception& error) {
        std::cerr << "page_quality: " << error.what() << '\n';
        return 2;
    }
}

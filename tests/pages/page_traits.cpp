// Prints the traits of the quadrilaterals in drawn frames, with which sheet each overlaps and how
// much: what scripts/fit-judgement fits the page engine's judgement to.
#include "overlap.h"
#include "page/search/candidates.h"
#include "page/search/judgement/judgement.h"
#include "page/search/judgement/traits.h"
#include "page/search/plain_regions.h"
#include "page/search/region_candidates.h"
#include "picture/jpeg.h"
#include "scene/frames/drawn_frame.h"

#include <CLI/CLI.hpp>
#include <opencv2/imgcodecs.hpp>

#include <cstdint>
#include <iostream>
#include <string>
#include <vector>

namespace {

using doccam::page::Candidate;
using doccam::page::Evidence;
using doccam::virtualcam::DrawnFrame;
using doccam::virtualcam::Quad;

constexpr std::size_t kCandidates = 200;

void printHeader() {
    std::cout << "frame sheets sheet overlap";
    for (const doccam::page::Weight& weight : doccam::page::weights()) {
        std::cout << ' ' << weight.name;
    }
    std::cout << '\n';
}

Quad inPicture(const Candidate& candidate, int factor) {
    Quad corners;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        corners[i] =
            (candidate.corners[i] + cv::Point2d(0.5, 0.5)) * factor - cv::Point2d(0.5, 0.5);
    }
    return corners;
}

// The sheet that corners overlap most, and how much.
std::pair<int, double> nearestSheet(const DrawnFrame& frame, const Quad& corners) {
    std::pair<int, double> nearest{-1, 0};
    for (std::size_t i = 0; i < frame.sheets.size(); ++i) {
        const double overlap =
            doccam::test::overlap(corners, frame.sheets[i].corners, frame.picture.size());
        if (overlap > nearest.second) {
            nearest = {static_cast<int>(i), overlap};
        }
    }
    return nearest;
}

std::vector<Candidate> candidatesIn(const Evidence& evidence) {
    const auto lines = doccam::page::linesIn(evidence);
    std::vector<Candidate> candidates =
        doccam::page::candidatesOf(lines, evidence.colour.size(), kCandidates);
    for (const doccam::page::Corners& region : doccam::page::plainRegions(evidence)) {
        const auto around = doccam::page::candidatesAround(region, lines, evidence);
        candidates.insert(candidates.end(), around.begin(), around.end());
    }
    return candidates;
}

void printTraits(const DrawnFrame& frame) {
    const cv::Mat sent = cv::imdecode(
        doccam::virtualcam::encodeJpeg(frame.picture, frame.jpegQuality), cv::IMREAD_COLOR);
    const Evidence evidence = doccam::page::evidenceOf(sent);
    for (const Candidate& candidate : candidatesIn(evidence)) {
        const auto [sheet, overlap] = nearestSheet(frame, inPicture(candidate, evidence.factor));
        const doccam::page::Traits traits = doccam::page::traitsOf(candidate, evidence);
        std::cout << frame.category << '-' << frame.seed << ' ' << frame.sheets.size() << ' '
                  << sheet << ' ' << overlap;
        for (const doccam::page::Weight& weight : doccam::page::weights()) {
            std::cout << ' ' << traits.*weight.trait;
        }
        std::cout << '\n';
    }
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Prints the traits of quadrilaterals in drawn frames.");
    std::vector<std::string> categories = doccam::virtualcam::frameCategories();
    std::uint64_t first = 1;
    std::uint64_t count = 20;
    app.add_option("--category", categories, "only these")->delimiter(',');
    app.add_option("--first", first, "the first seed");
    app.add_option("--count", count, "seeds of each category");
    CLI11_PARSE(app, argc, argv);
    try {
        printHeader();
        for (const std::string& category : categories) {
            for (std::uint64_t seed = first; seed < first + count; ++seed) {
                printTraits(doccam::virtualcam::drawFrame(category, seed));
            }
        }
    } catch (const std::exception& error) {
        std::cerr << "page_traits: " << error.what() << '\n';
        return 1;
    }
}

// The light on a page.
#include "page/paper/illumination.h"

#include "page/paper/flat_fills.h"
#include "page/paper/membrane.h"
#include "page/paper/paper_cells.h"
#include "page/paper/picture_boxes.h"
#include "page/paper/reduced_page.h"
#include "page/paper/sheet_colour.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace doccam::page {

namespace {

constexpr int kLongestSide = 800; // of the reduced page
constexpr int kThickestInk = 9;   // in its pixels
constexpr int kRounds = 3;
constexpr double kSameLight = 0.035; // deviation of paper from the light around
constexpr float kSamePaper = 0.03F;
constexpr double kDarkestShadow = 0.25;
constexpr double kBrightestSpot = 3;
constexpr double kSameColour = 0.025;  // how far the channels of such paper differ
constexpr double kNeutral = 0.08;      // and those of a sharp shadow
constexpr double kLargeRegion = 0.005; // of the page
constexpr double kRectangular = 0.88;  // share of its box that a fill takes
constexpr double kDarkInk = 0.4;
constexpr int kEdge = 9;            // cells, which reach across a sharp edge
constexpr double kSomePaper = 0.04; // of a quarter of the page
constexpr int kQuarters = 3;        // of four show paper, unless the page is a photograph

// The region's colour divided by the light there.
struct Ratio {
    double least = 1;
    double highest = 1;
};

Ratio ratioOf(const Region& region, const Cells& cells, const cv::Mat& light) {
    const cv::Mat inside = cells.labels(region.box) == region.label;
    const cv::Scalar colour = cv::mean(cells.colour(region.box), inside);
    const cv::Scalar lit = cv::mean(light(region.box), inside);
    Ratio ratio{1e6, 0};
    for (int c = 0; c < light.channels(); ++c) {
        const double channel = colour[c] / std::max(lit[c], 1.0);
        ratio = {std::min(ratio.least, channel), std::max(ratio.highest, channel)};
    }
    return ratio;
}

bool touchesBorder(const Region& region, cv::Size page) {
    constexpr int kMargin = 3;
    const cv::Rect& box = region.box;
    return box.x <= kMargin || box.y <= kMargin || box.br().x >= page.width - kMargin ||
           box.br().y >= page.height - kMargin;
}

// A shadow or a bright spot with a sharp edge: it has the paper's colour, comes in over the page's
// border, and is no rectangle as fills are.
bool isSharpShadow(const Region& region, const Ratio& ratio, cv::Size page) {
    return ratio.highest - ratio.least < kNeutral * ratio.highest && ratio.least > kDarkestShadow &&
           ratio.highest < kBrightestSpot && region.area > kLargeRegion * page.area() &&
           touchesBorder(region, page) && region.area < kRectangular * region.box.area();
}

bool isPaper(const Region& region, const Cells& cells, const cv::Mat& light) {
    const Ratio ratio = ratioOf(region, cells, light);
    return (ratio.least > 1 - kSameLight && ratio.highest < 1 + kSameLight &&
            ratio.highest - ratio.least < kSameColour) ||
           isSharpShadow(region, ratio, cells.labels.size());
}

// The light as far as it is known.
struct Light {
    cv::Mat known;   // 255 for cells that show it
    cv::Mat surface; // their light, and what it implies for the others
};

// From the cells of the main region, and of others that the light around explains.
Light lightOnPaper(const Cells& cells, const Region& main) {
    Light light{(cells.labels == main.label) & ~pictureBoxes(cells, main), {}};
    light.surface = membrane(cells.colour, light.known);
    std::vector<Region> others;
    std::copy_if(cells.regions.begin(), cells.regions.end(), std::back_inserter(others),
                 [&](const Region& region) { return region.label != main.label; });
    for (int round = 0; round < kRounds; ++round) {
        const auto end = std::remove_if(others.begin(), others.end(), [&](const Region& region) {
            const bool paper = isPaper(region, cells, light.surface);
            if (paper) {
                light.known(region.box).setTo(255, cells.labels(region.box) == region.label);
            }
            return paper;
        });
        if (end == others.end()) {
            break;
        }
        others.erase(end, others.end());
        light.surface = membrane(cells.colour, light.known);
    }
    return light;
}

// The edges of sharp shadows between paper and paper, where light is between that of both sides.
bool addShadowEdges(const Cells& cells, const cv::Mat& colour, cv::Mat& known) {
    const cv::Mat around = cv::getStructuringElement(cv::MORPH_RECT, {kEdge, kEdge});
    cv::Mat darkest = colour.clone();
    cv::Mat brightest = colour.clone();
    darkest.setTo(cv::Scalar::all(1e6), ~known);
    brightest.setTo(cv::Scalar::all(0), ~known);
    cv::erode(darkest, darkest, around);
    cv::dilate(brightest, brightest, around);
    cv::Mat edges;
    cv::inRange(cells.colour, darkest, brightest, edges);
    edges &= cells.labels == 0;
    cells.colour.copyTo(colour, edges);
    known |= edges;
    return cv::countNonZero(edges) > 0;
}

// Paper is all over a page; a wall or a sky in a photograph is not.
bool isAllOver(const cv::Mat& paper) {
    const cv::Size half((paper.cols + 1) / 2, (paper.rows + 1) / 2);
    int quarters = 0;
    for (const int x : {0, paper.cols - half.width}) {
        for (const int y : {0, paper.rows - half.height}) {
            const int seen = cv::countNonZero(paper(cv::Rect({x, y}, half)));
            quarters += seen >= kSomePaper * half.area() ? 1 : 0;
        }
    }
    return quarters >= kQuarters;
}

// The light also on fills that shadows cross and on sharp edges of shadows, without noise.
Light wholeLight(const Cells& cells, const Region& main) {
    Light light = lightOnPaper(cells, main);
    cv::Mat colour = light.surface.clone();
    const bool fills = addFlatFills(cells, light.surface, colour, light.known);
    const bool edges = addShadowEdges(cells, colour, light.known);
    if (fills || edges) {
        light.surface = membrane(colour, light.known);
    }
    cv::medianBlur(light.surface, light.surface, 3);
    return light;
}

Illumination asSeen(const cv::Mat& colour, int scale) {
    return {cv::Mat(colour.size(), colour.type(), cv::Scalar::all(255)),
            cv::Mat::zeros(colour.size(), CV_32F), scale};
}

// 255 where the page without ink is as bright as its light.
cv::Mat asBright(const cv::Mat& colour, const cv::Mat& light) {
    cv::Mat bright(colour.size(), CV_8U);
    const int channels = colour.channels();
    for (int y = 0; y < colour.rows; ++y) {
        const auto* seen = colour.ptr<float>(y);
        const auto* lit = light.ptr<float>(y);
        auto* row = bright.ptr<unsigned char>(y);
        for (int x = 0; x < colour.cols; ++x) {
            bool paper = true;
            for (int i = x * channels; i < (x + 1) * channels; ++i) {
                paper &= seen[i] > lit[i] * (1 - kSamePaper);
            }
            row[x] = paper ? 255 : 0;
        }
    }
    return bright;
}

// Letters so thick that they were not removed as ink: unlike pictures they are all dark.
void addThickInk(cv::Mat& paper, const cv::Mat& colour, const cv::Mat& light) {
    cv::Mat grey;
    cv::Mat lit;
    cv::transform(colour, grey, cv::Mat(1, colour.channels(), CV_32F, cv::Scalar(1)));
    cv::transform(light, lit, cv::Mat(1, light.channels(), CV_32F, cv::Scalar(1)));
    const cv::Mat dark = grey < lit * kDarkInk;
    cv::Mat labels;
    cv::Mat statistics;
    cv::Mat centroids;
    const cv::Mat other = ~paper;
    const int count = cv::connectedComponentsWithStats(other, labels, statistics, centroids, 8);
    for (int label = 1; label < count; ++label) {
        const int* const row = statistics.ptr<int>(label);
        const cv::Rect box(row[0], row[1], row[2], row[3]);
        const cv::Mat inside = labels(box) == label;
        if (cv::countNonZero(inside & dark(box)) * 5 > row[4] * 2 &&
            row[4] < kLargeRegion * static_cast<double>(paper.total())) {
            paper(box).setTo(255, inside);
        }
    }
}

// How sure each cell is paper, softly, and nowhere beside a picture.
cv::Mat paperShare(const cv::Mat& colour, const cv::Mat& light) {
    cv::Mat paper = asBright(colour, light);
    cv::medianBlur(paper, paper, 3);
    addThickInk(paper, colour, light);
    cv::erode(paper, paper, {});
    cv::Mat share;
    paper.convertTo(share, CV_32F, 1.0 / 255);
    cv::blur(share, share, {3, 3});
    return share;
}

} // namespace

Illumination illumination(const cv::Mat& page) {
    const ReducedPage reduced = reducePage(page, kLongestSide);
    const Cells cells = paperCells(withoutInk(reduced.pixels, kThickestInk));
    const int scale = reduced.scale * 2;
    const Region* const main = mainPaper(cells);
    if (main == nullptr) {
        return asSeen(cells.colour, scale);
    }
    const Ground ground = groundOf(cells, *main);
    const Light light = wholeLight(cells, *ground.region);
    if (!isAllOver(light.known)) {
        return asSeen(cells.colour, scale);
    }
    if (!ground.white) {
        return {light.surface / ground.colour, cv::Mat::zeros(light.surface.size(), CV_32F), scale,
                ground.colour * 255};
    }
    return {light.surface, paperShare(cells.colour, light.surface), scale};
}

} // namespace doccam::page

// Pages with fills, highlighter and tables.
#include "scene/pages/contents.h"
#include "scene/pages/page_layout.h"
#include "scene/pages/prose.h"

#include <algorithm>
#include <string>
#include <vector>

namespace doccam::virtualcam {

namespace {

const Ink kPale[] = {{0.87, 0.92, 0.97}, {0.98, 0.93, 0.84}, {0.88, 0.95, 0.87},
                     {0.96, 0.88, 0.89}, {0.91, 0.91, 0.91}, {0.99, 0.96, 0.78},
                     {0.9, 0.87, 0.95},  {0.84, 0.94, 0.94}};
const Ink kStrong[] = {{0.85, 0.3, 0.25}, {0.25, 0.5, 0.8}, {0.3, 0.65, 0.4}, {0.95, 0.7, 0.2}};
const Ink kMarkers[] = {{0.98, 0.95, 0.35}, {0.6, 0.95, 0.5}, {1, 0.65, 0.78}, {1, 0.78, 0.4}};
constexpr double kBoxInset = 5; // millimetres from a filled box's side to its words

// A pale box of a few lines of text.
double writeBox(PagePainter& page, double y, cv::RNG& random) {
    const double height = 5 * page.lineHeight() + 8;
    page.fillRegion({kPageMargin, y - page.lineHeight(), kTextWidth, height},
                    kPale[random.uniform(0, 8)], RegionKind::kFill);
    page.writeParagraph(prose(random.uniform(4, 6), random), kPageMargin + kBoxInset, y + 3,
                        kTextWidth - 2 * kBoxInset, y + 3.5 * page.lineHeight());
    return y + height + page.lineHeight() * 0.8;
}

// Bars of strong colours on a pale ground.
double drawChart(PagePainter& page, double y, cv::RNG& random) {
    const double height = 46;
    page.fillRegion({kPageMargin, y, kTextWidth, height}, kPale[random.uniform(0, 8)],
                    RegionKind::kFill);
    for (int i = 0; i < 8; ++i) {
        const double bar = random.uniform(10.0, 38.0);
        page.fillRegion({kPageMargin + 10 + i * 19.5, y + height - 4 - bar, 12, bar},
                        kStrong[i % 4], RegionKind::kFill);
    }
    return y + height + page.lineHeight() * 1.6;
}

// A stroke under the words that are written next.
void strike(PagePainter& page, double x, double y, double width, cv::RNG& random) {
    const double height = page.lineHeight() * 0.82;
    page.fillRegion({x - 1, y - height * 0.78 + random.uniform(-0.3, 0.3), width + 2, height},
                    kMarkers[random.uniform(0, 4)], RegionKind::kHighlighter);
}

std::vector<std::string> wordsOf(const std::string& text) {
    std::vector<std::string> words;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find(' ', from), text.size());
        words.push_back(text.substr(from, end - from));
        from = end + 1;
    }
    return words;
}

// The words that fit into a line, from the next one on.
std::string nextLine(const PagePainter& page, const std::vector<std::string>& words,
                     std::size_t& next) {
    std::string line;
    while (next < words.size() && page.widthOf(line + words[next]) < kTextWidth) {
        line += words[next++] + " ";
    }
    line.pop_back();
    return line;
}

double writeRow(PagePainter& page, const std::vector<std::string>& cells, double y, double height) {
    page.writeLine(cells[0], kPageMargin + 3, y + height * 0.68);
    for (std::size_t i = 1; i < cells.size(); ++i) {
        page.writeLineTo(cells[i], kPageMargin + 50 + 40 * static_cast<double>(i) - 3,
                         y + height * 0.68);
    }
    return y + height;
}

double drawTable(PagePainter& page, double y, int rows, cv::RNG& random) {
    static const char* const kNames[] = {"Bread",   "Butter",    "Coffee",  "Apples", "Cheese",
                                         "Pencils", "Envelopes", "Candles", "Honey",  "Baskets"};
    const double height = page.lineHeight() * 1.45;
    const double top = y;
    page.fillRegion({kPageMargin, y, kTextWidth, height}, kPale[random.uniform(0, 8)],
                    RegionKind::kFill);
    y = writeRow(page, {"Article", "Pieces", "Weight", "Price"}, y, height);
    for (int i = 0; i < rows; ++i) {
        y = writeRow(
            page,
            {kNames[random.uniform(0, 10)], std::to_string(random.uniform(10, 999)),
             std::to_string(random.uniform(1000, 9999)),
             std::to_string(random.uniform(10, 99)) + "." + std::to_string(random.uniform(10, 99))},
            y, height);
    }
    for (double line = top; line < y + height / 2; line += height) {
        page.rule({kPageMargin, line}, {kPageMargin + kTextWidth, line}, 0.2, {0.3, 0.3, 0.3});
    }
    for (const double column : {0.0, 50.0, 90.0, 130.0, kTextWidth}) {
        page.rule({kPageMargin + column, top}, {kPageMargin + column, y}, 0.2, {0.3, 0.3, 0.3});
    }
    return y + page.lineHeight() * 2;
}

} // namespace

PrintedPage printFills(cv::RNG& random) {
    PagePainter page = emptyPage();
    const std::string family = textFamily(random);
    double y = writeHeading(page, family, random);
    page.use(Font{family, random.uniform(10.5, 12.0)});
    y = drawChart(page, y - 4, random);
    while (y + 10 * page.lineHeight() < kPageBottom) {
        y = writeProse(page, random.uniform(4, 7), y, random) + page.lineHeight() * 0.4;
        y = writeBox(page, y, random);
    }
    return page.finish();
}

PrintedPage printHighlighter(cv::RNG& random) {
    PagePainter page = emptyPage();
    const std::string family = textFamily(random);
    double y = writeHeading(page, family, random);
    page.use(Font{family, random.uniform(11.0, 12.5)});
    const std::vector<std::string> words = wordsOf(prose(60, random));
    for (std::size_t next = 0; next < words.size() && y < kPageBottom; y += page.lineHeight()) {
        const std::string line = nextLine(page, words, next);
        const bool marked = random.uniform(0, 6) == 0;
        if (marked) {
            strike(page, kPageMargin, y, page.widthOf(line), random);
        }
        page.mark(marked);
        page.writeLine(line, kPageMargin, y);
    }
    return page.finish();
}

PrintedPage printTables(cv::RNG& random) {
    PagePainter page = emptyPage();
    const std::string family = textFamily(random);
    double y = writeHeading(page, family, random);
    page.use(Font{family, random.uniform(10.5, 11.5)});
    for (int i = 0; i < 3; ++i) {
        y = writeProse(page, random.uniform(5, 8), y, random);
        y = drawTable(page, y, random.uniform(4, 6), random);
    }
    if (hasRoom(page, y)) {
        writeProse(page, 8, y, random);
    }
    return page.finish();
}

} // namespace doccam::virtualcam

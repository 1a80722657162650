// Pages of print that is small, pale, coloured or reversed.
#include "scene/pages/contents.h"
#include "scene/pages/page_layout.h"
#include "scene/pages/prose.h"

#include <algorithm>
#include <string>

namespace doccam::virtualcam {

namespace {

const Ink kColours[] = {{0.78, 0.1, 0.12}, {0.08, 0.3, 0.68},  {0.05, 0.45, 0.25},
                        {0.8, 0.38, 0.05}, {0.45, 0.15, 0.55}, {0.1, 0.5, 0.6}};
const Ink kGrounds[] = {{0.08, 0.08, 0.1},  {0.1, 0.22, 0.45}, {0.5, 0.1, 0.14},
                        {0.08, 0.35, 0.25}, {0.3, 0.3, 0.33},  {0.35, 0.16, 0.42}};

// White words on a dark ground as high as they need.
double writeReversed(PagePainter& page, double y, cv::RNG& random) {
    const std::string text = prose(random.uniform(2, 5), random);
    const double inner = kTextWidth - 12;
    double width = 0;
    int lines = 2;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find(' ', from), text.size());
        const double word = page.widthOf(text.substr(from, end - from) + " x") - page.widthOf("x");
        width += word;
        if (width > inner) {
            ++lines;
            width = word;
        }
        from = end + 1;
    }
    const double height = lines * page.lineHeight() + 5;
    page.fill({kPageMargin, y - page.lineHeight(), kTextWidth, height},
              kGrounds[random.uniform(0, 6)]);
    page.use(Ink{1, 1, 1});
    page.writeParagraph(text, kPageMargin + 6, y + 4, inner, kPageBottom);
    page.use(Ink{0.1, 0.1, 0.1});
    return y + height + page.lineHeight() * 0.7;
}

PrintedPage printInInks(double points, cv::RNG& random, Ink (*choose)(cv::RNG&)) {
    PagePainter page = emptyPage();
    const std::string family = textFamily(random);
    page.use(choose(random));
    double y = writeHeading(page, family, random);
    page.use(Font{family, points});
    while (hasRoom(page, y)) {
        page.use(choose(random));
        y = writeProse(page, random.uniform(4, 8), y, random);
    }
    return page.finish();
}

} // namespace

PrintedPage printSmallPrint(cv::RNG& random) {
    return printInInks(random.uniform(7.5, 8.5), random, [](cv::RNG&) { return Ink{0, 0, 0}; });
}

PrintedPage printPalePrint(cv::RNG& random) {
    return printInInks(random.uniform(11.0, 13.0), random, [](cv::RNG& dice) {
        const double level = dice.uniform(0.5, 0.72);
        return Ink{level, level, level + dice.uniform(-0.03, 0.03)};
    });
}

PrintedPage printColouredPrint(cv::RNG& random) {
    return printInInks(random.uniform(10.5, 12.5), random,
                       [](cv::RNG& dice) { return kColours[dice.uniform(0, 6)]; });
}

PrintedPage printReversedPrint(cv::RNG& random) {
    PagePainter page = emptyPage();
    const std::string family = textFamily(random);
    double y = writeHeading(page, family, random);
    page.use(Font{family, random.uniform(11.0, 12.5), random.uniform(0, 2) == 1});
    while (y + 9 * page.lineHeight() < kPageBottom) {
        y = writeReversed(page, y, random);
        y = writeProse(page, random.uniform(2, 5), y, random) + page.lineHeight() * 0.6;
    }
    return page.finish();
}

} // namespace doccam::virtualcam

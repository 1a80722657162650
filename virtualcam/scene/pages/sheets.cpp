#include "scene/pages/sheets.h"

#include "scene/pages/page_painter.h"
#include "scene/pages/prose.h"

#include <cmath>
#include <string>

namespace doccam::virtualcam {

namespace {

constexpr double kFine = 600; // dots per inch of what is smaller than A5
constexpr double kPlain = 300;

Ink paper(cv::RNG& random) {
    const double level = random.uniform(0.955, 0.985);
    return {level, level, level - random.uniform(0.0, 0.02)};
}

std::string price(cv::RNG& random) {
    const int cents = random.uniform(5, 100);
    return std::to_string(random.uniform(1, 60)) + "." + (cents < 10 ? "0" : "") +
           std::to_string(cents);
}

void drawGuilloche(cairo_t* cairo, cv::Point2d centre, double radius, const Ink& ink, int petals) {
    cairo_set_source_rgb(cairo, ink.red, ink.green, ink.blue);
    cairo_set_line_width(cairo, 0.12);
    for (int ring = 0; ring < 7; ++ring) {
        for (int i = 0; i <= 360; ++i) {
            const double angle = i * CV_PI / 180;
            const double wave = std::cos(petals * angle + ring * 0.9);
            const double r = radius * (0.65 + 0.3 * wave);
            cairo_line_to(cairo, centre.x + r * std::cos(angle), centre.y + r * std::sin(angle));
        }
        cairo_stroke(cairo);
    }
}

} // namespace

PrintedPage printLetter(cv::Size2d millimetres, cv::RNG& random) {
    PagePainter page(millimetres, kPlain, paper(random));
    const double margin = millimetres.width * random.uniform(0.09, 0.13);
    const double width = millimetres.width - 2 * margin;
    const double bottom = millimetres.height - margin;
    const std::string family = random.uniform(0, 2) == 0 ? "Liberation Serif" : "Liberation Sans";
    page.use(Font{family, 18, true});
    page.writeLine(heading(random), margin, margin + 6);
    page.use(Font{family, random.uniform(10.5, 12.5)});
    double y = margin + 18;
    while (y < bottom - 3 * page.lineHeight()) {
        y = page.writeParagraph(prose(random.uniform(4, 9), random), margin, y, width, bottom);
        y += page.lineHeight() * 0.6;
    }
    return page.finish();
}

PrintedPage printReceipt(cv::RNG& random) {
    static const char* const kGoods[] = {"Bread", "Butter", "Coffee", "Apples", "Cheese",
                                         "Soap",  "Paper",  "Pencil", "Tomato", "Honey"};
    const int lines = random.uniform(9, 16);
    const cv::Size2d size(random.uniform(57.0, 80.0), 62 + 5.5 * lines);
    PagePainter page(size, kFine, paper(random));
    page.use(Ink{0.16, 0.16, 0.2});
    page.use(Font{"Liberation Mono", 13, true});
    page.writeLine("CORNER SHOP", 6, 13);
    page.use(Font{"Liberation Mono", 9});
    page.writeLine("Harbour Street 12", 6, 19);
    page.rule({5, 23}, {size.width - 5, 23}, 0.25, {0.3, 0.3, 0.3});
    double y = 30;
    for (int i = 0; i < lines; ++i, y += 5.5) {
        page.writeLine(kGoods[random.uniform(0, 10)], 6, y);
        page.writeLineTo(price(random), size.width - 6, y);
    }
    page.rule({5, y - 2}, {size.width - 5, y - 2}, 0.25, {0.3, 0.3, 0.3});
    page.use(Font{"Liberation Mono", 12, true});
    page.writeLine("TOTAL", 6, y + 4);
    page.writeLineTo(price(random), size.width - 6, y + 4);
    page.use(Font{"Liberation Mono", 8});
    page.writeLine("Thank you for your visit", 6, y + 14);
    return page.finish();
}

PrintedPage printCard(cv::RNG& random) {
    static const Ink kGrounds[] = {{0.96, 0.96, 0.95}, {0.93, 0.9, 0.82}, {0.78, 0.87, 0.93},
                                   {0.9, 0.83, 0.86},  {0.12, 0.3, 0.5},  {0.75, 0.85, 0.76}};
    const int ground = random.uniform(0, 6);
    PagePainter page({85.6, 53.98}, kFine, kGrounds[ground]);
    const Ink text = ground == 4 ? Ink{0.95, 0.95, 0.95} : Ink{0.1, 0.12, 0.2};
    page.fill({0, 8, 85.6, 1.2}, {0.75, 0.25, 0.2});
    page.use(text);
    page.use(Font{"Liberation Sans", 10, true});
    page.writeLine("LIBRARY CARD", 6, 6.4);
    page.fill({6, 15, 20, 26}, {0.55, 0.6, 0.66});
    page.use(Font{"Liberation Sans", 9});
    page.writeLine("Reader", 31, 19);
    page.writeLine("Valid until December", 31, 25);
    page.writeLine("Number " + std::to_string(random.uniform(100000, 999999)), 31, 31);
    page.use(Font{"Liberation Sans", 7});
    page.writeLine("Return this card to the desk when you leave", 6, 48);
    return page.finish();
}

PrintedPage printBanknote(cv::RNG& random) {
    static const Ink kInks[] = {
        {0.45, 0.3, 0.25}, {0.2, 0.42, 0.35}, {0.25, 0.33, 0.55}, {0.55, 0.28, 0.38}};
    const Ink ink = kInks[random.uniform(0, 4)];
    const Ink light{0.72 + 0.28 * ink.red, 0.72 + 0.28 * ink.green, 0.72 + 0.28 * ink.blue};
    const cv::Size2d size(random.uniform(120.0, 155.0), random.uniform(62.0, 78.0));
    PagePainter page(size, kFine, light);
    page.fill({0, 0, size.width * 0.22, size.height}, {0.93, 0.92, 0.88});
    drawGuilloche(page.cairo(), {size.width * 0.6, size.height * 0.5}, 24, ink, 9);
    drawGuilloche(page.cairo(), {size.width * 0.82, size.height * 0.4}, 15, ink, 13);
    page.use(ink);
    const std::string value = std::to_string(10 * random.uniform(1, 10));
    page.use(Font{"Liberation Serif", 40, true});
    page.writeLine(value, 5, 19);
    page.writeLineTo(value, size.width - 5, size.height - 6);
    page.use(Font{"Liberation Serif", 11});
    page.writeLine("SPECIMEN NOTE", size.width * 0.26, 9);
    page.writeLine("No value", size.width * 0.26, size.height - 6);
    return page.finish();
}

PrintedPage printRuledPad(cv::RNG& random) {
    const cv::Size2d size(148, 210);
    PagePainter page(size, kPlain, paper(random));
    const double pitch = random.uniform(7.0, 9.0);
    const Ink blue{0.62, 0.74, 0.88};
    for (double y = 24; y < size.height - 5; y += pitch) {
        page.rule({0, y}, {size.width, y}, 0.25, blue);
    }
    page.rule({22, 0}, {22, size.height}, 0.3, {0.9, 0.55, 0.58});
    page.use(Ink{0.12, 0.16, 0.45});
    page.use(Font{"Liberation Sans", 13, false, true});
    const std::string text = prose(6, random);
    double y = 24 - 1.8;
    std::string line;
    for (std::size_t from = 0; from < text.size() && y < size.height - 20;) {
        const std::size_t end = text.find(' ', from);
        const std::string word = text.substr(from, end - from);
        if (page.widthOf(line + " " + word) > size.width - 34) {
            page.writeLine(line, 26, y);
            y += pitch;
            line.clear();
        }
        line += line.empty() ? word : " " + word;
        from = end == std::string::npos ? text.size() : end + 1;
    }
    page.writeLine(line, 26, y);
    return page.finish();
}

} // namespace doccam::virtualcam

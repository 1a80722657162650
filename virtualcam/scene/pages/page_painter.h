// Prints onto a page with cairo, and keeps account of its words and regions.
#pragma once

#include "scene/pages/printed_page.h"

#include <cairo.h>

#include <memory>
#include <string>

namespace doccam::virtualcam {

struct Ink {
    double red = 0; // 0 to 1, sRGB
    double green = 0;
    double blue = 0;
};

struct Font {
    std::string family = "Liberation Serif";
    double points = 11;
    bool bold = false;
    bool italic = false;
};

// Places are in millimetres from the page's top left corner.
class PagePainter {
  public:
    PagePainter(cv::Size2d millimetres, double dotsPerInch, const Ink& paper = {1, 1, 1});

    void use(const Font& font);

    void use(const Ink& ink) { ink_ = ink; }

    // Words written from now on lie under highlighter.
    void mark(bool marked) { marked_ = marked; }

    // A line of words from x, its baseline at y. Returns where it ends.
    double writeLine(const std::string& text, double x, double y);
    // The same, ending at x.
    void writeLineTo(const std::string& text, double x, double y);
    // Words in lines of that width from the first baseline y down to bottom at the latest. Returns
    // the baseline after the last line.
    double writeParagraph(const std::string& text, double x, double y, double width, double bottom);

    double lineHeight() const;
    double widthOf(const std::string& text) const;

    void fill(const cv::Rect2d& box, const Ink& ink);
    // A region of the page's truth in one flat colour.
    void fillRegion(const cv::Rect2d& box, const Ink& ink, RegionKind kind);
    void rule(cv::Point2d from, cv::Point2d to, double width, const Ink& ink);
    void printPicture(const cv::Mat& picture, const cv::Rect2d& box);

    cairo_t* cairo() const { return cairo_.get(); }

    cv::Size2d millimetres() const { return page_.millimetres; }

    // The page; nothing can be printed after that.
    PrintedPage finish();

  private:
    cv::Rect pixels(const cv::Rect2d& box) const;

    double scale_; // pixels per millimetre
    PrintedPage page_;
    std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface_;
    std::unique_ptr<cairo_t, void (*)(cairo_t*)> cairo_;
    Font font_;
    Ink ink_;
    bool marked_ = false;
};

} // namespace doccam::virtualcam

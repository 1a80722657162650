#include "scene/pages/page_painter.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace doccam::virtualcam {

namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kPointsPerInch = 72;
constexpr double kLeading = 1.28;   // line to line, of the font's size
constexpr double kWiderSpace = 0.3; // of a space: fonts are set a little wider in print

cairo_surface_t* createdSurface(cv::Size2d millimetres, double scale) {
    return cairo_image_surface_create(CAIRO_FORMAT_RGB24, cvRound(millimetres.width * scale),
                                      cvRound(millimetres.height * scale));
}

// Letters as a printer sets them, not fitted to a screen's pixels.
void usePrintersOptions(cairo_t* cairo) {
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cairo, options);
    cairo_font_options_destroy(options);
}

} // namespace

PagePainter::PagePainter(cv::Size2d millimetres, double dotsPerInch, const Ink& paper)
  : scale_(dotsPerInch / kMillimetresPerInch)
  , surface_(createdSurface(millimetres, scale_), cairo_surface_destroy)
  , cairo_(cairo_create(surface_.get()), cairo_destroy) {
    if (cairo_status(cairo_.get()) != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error("cairo cannot create a page");
    }
    page_.millimetres = millimetres;
    cairo_scale(cairo_.get(), scale_, scale_);
    usePrintersOptions(cairo_.get());
    fill({0, 0, millimetres.width, millimetres.height}, paper);
    use(Font{});
}

void PagePainter::use(const Font& font) {
    font_ = font;
    cairo_select_font_face(cairo_.get(), font.family.c_str(),
                           font.italic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                           font.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo_.get(), font.points * kMillimetresPerInch / kPointsPerInch);
}

double PagePainter::lineHeight() const {
    return font_.points * kMillimetresPerInch / kPointsPerInch * kLeading;
}

double PagePainter::widthOf(const std::string& text) const {
    cairo_text_extents_t extents;
    cairo_text_extents(cairo_.get(), text.c_str(), &extents);
    cairo_text_extents_t space;
    cairo_text_extents(cairo_.get(), " ", &space);
    const auto spaces = static_cast<double>(std::count(text.begin(), text.end(), ' '));
    return extents.x_advance + spaces * kWiderSpace * space.x_advance;
}

cv::Rect PagePainter::pixels(const cv::Rect2d& box) const {
    const cv::Point low(cvRound(box.x * scale_), cvRound(box.y * scale_));
    const cv::Point high(cvRound((box.x + box.width) * scale_),
                         cvRound((box.y + box.height) * scale_));
    return {low, high};
}

double PagePainter::writeLine(const std::string& text, double x, double y) {
    std::istringstream words(text);
    std::string word;
    const double space = widthOf(" ");
    cairo_set_source_rgb(cairo_.get(), ink_.red, ink_.green, ink_.blue);
    while (words >> word) {
        cairo_text_extents_t extents;
        cairo_text_extents(cairo_.get(), word.c_str(), &extents);
        cairo_move_to(cairo_.get(), x, y);
        cairo_show_text(cairo_.get(), word.c_str());
        const cv::Rect2d box(x + extents.x_bearing, y + extents.y_bearing, extents.width,
                             extents.height);
        page_.words.push_back({word, pixels(box), marked_});
        x += extents.x_advance + space;
    }
    return x;
}

void PagePainter::writeLineTo(const std::string& text, double x, double y) {
    writeLine(text, x - widthOf(text), y);
}

double PagePainter::writeParagraph(const std::string& text, double x, double y, double width,
                                   double bottom) {
    std::istringstream words(text);
    std::string line;
    std::string word;
    while (words >> word) {
        const std::string longer = line.empty() ? word : line + " " + word;
        if (!line.empty() && widthOf(longer) > width) {
            writeLine(line, x, y);
            y += lineHeight();
            line = word;
            if (y > bottom) {
                return y;
            }
        } else {
            line = longer;
        }
    }
    writeLine(line, x, y);
    return y + lineHeight();
}

void PagePainter::fill(const cv::Rect2d& box, const Ink& ink) {
    cairo_set_source_rgb(cairo_.get(), ink.red, ink.green, ink.blue);
    cairo_rectangle(cairo_.get(), box.x, box.y, box.width, box.height);
    cairo_fill(cairo_.get());
}

void PagePainter::fillRegion(const cv::Rect2d& box, const Ink& ink, RegionKind kind) {
    fill(box, ink);
    page_.regions.push_back({kind, pixels(box)});
}

void PagePainter::rule(cv::Point2d from, cv::Point2d to, double width, const Ink& ink) {
    cairo_set_source_rgb(cairo_.get(), ink.red, ink.green, ink.blue);
    cairo_set_line_width(cairo_.get(), width);
    cairo_move_to(cairo_.get(), from.x, from.y);
    cairo_line_to(cairo_.get(), to.x, to.y);
    cairo_stroke(cairo_.get());
}

void PagePainter::printPicture(const cv::Mat& picture, const cv::Rect2d& box) {
    const cv::Rect place = pixels(box);
    cv::Mat fitted;
    cv::resize(picture, fitted, place.size(), 0, 0, cv::INTER_CUBIC);
    cv::cvtColor(fitted, fitted, cv::COLOR_BGR2BGRA);
    cairo_surface_flush(surface_.get());
    cv::Mat all(cairo_image_surface_get_height(surface_.get()),
                cairo_image_surface_get_width(surface_.get()), CV_8UC4,
                cairo_image_surface_get_data(surface_.get()),
                static_cast<std::size_t>(cairo_image_surface_get_stride(surface_.get())));
    fitted.copyTo(all(place));
    cairo_surface_mark_dirty(surface_.get());
    page_.regions.push_back({RegionKind::kPicture, place});
}

PrintedPage PagePainter::finish() {
    cairo_surface_flush(surface_.get());
    const cv::Mat all(cairo_image_surface_get_height(surface_.get()),
                      cairo_image_surface_get_width(surface_.get()), CV_8UC4,
                      cairo_image_surface_get_data(surface_.get()),
                      static_cast<std::size_t>(cairo_image_surface_get_stride(surface_.get())));
    cv::cvtColor(all, page_.picture, cv::COLOR_BGRA2BGR);
    return std::move(page_);
}

} // namespace doccam::virtualcam

// The usual layout of an A4 page: margins, a heading, paragraphs one below the other.
#pragma once

#include "scene/pages/page_painter.h"

#include <opencv2/core.hpp>

#include <string>

namespace doccam::virtualcam {

// Millimetres.
inline constexpr double kPageMargin = 20;
inline constexpr double kTextWidth = 170;
inline constexpr double kPageBottom = 277;

PagePainter emptyPage();

// Serif or sans.
std::string textFamily(cv::RNG& random);

// A heading at the top; returns the first baseline below it.
double writeHeading(PagePainter& page, const std::string& family, cv::RNG& random);

// A few sentences from baseline y; returns the baseline of the next paragraph.
double writeProse(PagePainter& page, int sentences, double y, cv::RNG& random);

// Whether another paragraph of a few lines fits below baseline y.
bool hasRoom(const PagePainter& page, double y);

} // namespace doccam::virtualcam

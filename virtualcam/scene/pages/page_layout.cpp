#include "scene/pages/page_layout.h"

#include "scene/pages/prose.h"

namespace doccam::virtualcam {

PagePainter emptyPage() {
    return {{210, 297}, 300};
}

std::string textFamily(cv::RNG& random) {
    return random.uniform(0, 2) == 0 ? "Liberation Serif" : "Liberation Sans";
}

double writeHeading(PagePainter& page, const std::string& family, cv::RNG& random) {
    page.use(Font{family, 18, true});
    page.writeLine(heading(random), kPageMargin, kPageMargin + 6);
    return kPageMargin + 18;
}

double writeProse(PagePainter& page, int sentences, double y, cv::RNG& random) {
    y = page.writeParagraph(prose(sentences, random), kPageMargin, y, kTextWidth, kPageBottom);
    return y + page.lineHeight() * 0.6;
}

bool hasRoom(const PagePainter& page, double y) {
    return y + 3 * page.lineHeight() < kPageBottom;
}

} // namespace doccam::virtualcam

// Pages with pictures between their paragraphs.
#include "scene/pages/contents.h"
#include "scene/pages/page_layout.h"
#include "scene/pages/prose.h"

#include <string>

namespace doccam::virtualcam {

PrintedPage printPictures(cv::RNG& random) {
    PagePainter page = emptyPage();
    const std::string family = textFamily(random);
    double y = writeHeading(page, family, random);
    page.use(Font{family, random.uniform(10.5, 12.0)});
    const int count = random.uniform(1, 3);
    for (int i = 0; i < count; ++i) {
        y = writeProse(page, random.uniform(2, 5), y, random);
        const double width = random.uniform(90.0, kTextWidth);
        const double height = random.uniform(48.0, 64.0);
        const double x = kPageMargin + random.uniform(0.0, 1.0) * (kTextWidth - width);
        page.printPicture(drawPhotograph({cvRound(width * 8), cvRound(height * 8)}, random),
                          {x, y - page.lineHeight() * 0.5, width, height});
        y += height + page.lineHeight() * 1.2;
    }
    while (hasRoom(page, y)) {
        y = writeProse(page, random.uniform(3, 6), y, random);
    }
    return page.finish();
}

} // namespace doccam::virtualcam

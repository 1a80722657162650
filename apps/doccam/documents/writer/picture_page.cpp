#include "documents/writer/picture_page.h"

#include "documents/writer/pictures/fax_image.h"
#include "documents/writer/pictures/jpeg_picture.h"
#include "documents/writer/pictures/picture_bytes.h"
#include "documents/writer/pictures/png_picture.h"
#include "documents/writer/pictures/tiff_pictures.h"

#include <algorithm>
#include <cmath>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <sstream>
#include <utility>

namespace doccam::host {
namespace {

constexpr double kPointsPerMillimetre = 72 / 25.4;

// An image and how it is stored.
struct Stored {
    ImageStream image;
    cv::Size size;
    int orientation = 1;
};

Stored storedPicture(const PlannedPage& planned) {
    if (!planned.pixels.empty()) {
        return {flateImage(planned.pixels), planned.pixels.size()};
    }
    const Bytes bytes = readFile(planned.file);
    if (const auto jpeg = jpegPicture(bytes)) {
        return {asImage(*jpeg, planned.file, bytes.size()), jpeg->facts.size,
                jpeg->facts.orientation};
    }
    if (const auto png = pngPicture(bytes)) {
        return {asImage(*png, bytes), png->facts.size};
    }
    if (isTiff(bytes)) {
        const PictureFacts facts = tiffPicture(planned.file, planned.part);
        return {tiffImage(planned.file, planned.part), facts.size, facts.orientation};
    }
    throw DocumentError("cannot become a page");
}

// How a stored picture is shown: mirrored first, then turned clockwise by quarters.
struct Showing {
    bool mirrored = false;
    int quarterTurns = 0;
};

// https://www.cipa.jp/std/documents/e/DC-008-2012_E.pdf, section 4.6.4
Showing showingOf(int orientation) {
    switch (orientation) {
    case 2:
        return {true, 0};
    case 3:
        return {false, 2};
    case 4:
        return {true, 2};
    case 5:
        return {true, 3};
    case 6:
        return {false, 1};
    case 7:
        return {true, 1};
    case 8:
        return {false, 3};
    default:
        return {};
    }
}

std::string number(double value) {
    constexpr double kThousandths = 1000;
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::round(value * kThousandths) / kThousandths;
    return text.str();
}

std::string matrix(double a, double d, double e, double f) {
    return number(a) + " 0 0 " + number(d) + " " + number(e) + " " + number(f) + " cm\n";
}

// Names the images of a page and draws them in one place.
class Drawing {
  public:
    Drawing(QPDF& document, const Place& place, bool mirrored)
      : document_(document) {
        content_ = "q\n" + (mirrored ? matrix(-place.width, place.height, place.left + place.width,
                                              place.bottom)
                                     : matrix(place.width, place.height, place.left, place.bottom));
    }

    void image(ImageStream image) {
        std::string name = "/Im" + std::to_string(count_++);
        images_.replaceKey(name, addImage(document_, std::move(image)));
        content_ += name + " Do\n";
    }

    void colour(const cv::Vec3b& colour) {
        constexpr double kFull = 255;
        content_ += number(colour[2] / kFull) + " " + number(colour[1] / kFull) + " " +
                    number(colour[0] / kFull) + " rg\n";
    }

    std::string content() const { return content_ + "Q\n"; }

    QPDFObjectHandle images() const { return images_; }

  private:
    QPDF& document_;
    std::string content_;
    QPDFObjectHandle images_ = QPDFObjectHandle::newDictionary();
    int count_ = 0;
};

void drawLayers(Drawing& drawing, const Layers& layers) {
    if (!layers.background.empty()) {
        const auto jpeg = jpegPicture(layers.background);
        if (!jpeg) {
            throw DocumentError("has a damaged background");
        }
        drawing.image(asImage(*jpeg, layers.background));
    }
    for (const Ink& ink : layers.inks) {
        drawing.colour(ink.colour);
        drawing.image(faxStencil(ink.mask));
    }
}

// In pixels of the ink, or of the background.
cv::Size sizeOf(const Layers& layers) {
    if (!layers.inks.empty()) {
        return layers.inks.front().mask.size();
    }
    const auto jpeg = jpegPicture(layers.background);
    return jpeg ? jpeg->facts.size : cv::Size(1, 1);
}

QPDFObjectHandle addPage(QPDF& document, const Drawing& drawing, const Millimetres& size,
                         int quarterTurns) {
    QPDFObjectHandle page = QPDFObjectHandle::parse(
        "<< /Type /Page /MediaBox [0 0 " + number(size.width * kPointsPerMillimetre) + " " +
        number(size.height * kPointsPerMillimetre) + "] >>");
    QPDFObjectHandle resources = QPDFObjectHandle::newDictionary();
    resources.replaceKey("/XObject", drawing.images());
    page.replaceKey("/Resources", resources);
    page.replaceKey("/Contents", document.newStream(drawing.content()));
    if (quarterTurns != 0) {
        page.replaceKey("/Rotate", QPDFObjectHandle::newInteger(90LL * quarterTurns));
    }
    QPDFObjectHandle added = document.makeIndirectObject(page);
    QPDFPageDocumentHelper(document).addPage(added, false);
    return added;
}

Millimetres turned(const Millimetres& size, int quarterTurns) {
    return quarterTurns % 2 == 0 ? size : Millimetres{size.height, size.width};
}

} // namespace

Place placeOf(cv::Size picture, const Millimetres& page) {
    const double width = page.width * kPointsPerMillimetre;
    const double height = page.height * kPointsPerMillimetre;
    // A sheet's corners are never found so exactly that its proportions are those of the paper.
    constexpr double kSameProportions = 0.01;
    const double across = width / picture.width;
    const double down = height / picture.height;
    if (std::abs(across / down - 1) < kSameProportions) {
        return {0, 0, width, height};
    }
    const double scale = std::min(across, down);
    const double shownWidth = scale * picture.width;
    const double shownHeight = scale * picture.height;
    return {(width - shownWidth) / 2, (height - shownHeight) / 2, shownWidth, shownHeight};
}

QPDFObjectHandle addPicturePage(QPDF& document, const PlannedPage& planned) {
    if (const auto layers = planned.layers ? planned.layers() : std::nullopt) {
        Drawing drawing(document, placeOf(sizeOf(*layers), planned.size), false);
        drawLayers(drawing, *layers);
        return addPage(document, drawing, planned.size, 0);
    }
    Stored stored = storedPicture(planned);
    const Showing showing = showingOf(stored.orientation);
    const int turns = (showing.quarterTurns + planned.quarterTurns) % 4;
    const Millimetres size = turned(planned.size, turns);
    Drawing drawing(document, placeOf(stored.size, size), showing.mirrored);
    drawing.image(std::move(stored.image));
    return addPage(document, drawing, size, turns);
}

} // namespace doccam::host

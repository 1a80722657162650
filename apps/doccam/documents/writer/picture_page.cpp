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
    int orientation = 1;
};

Stored storedPicture(const PlannedPage& planned) {
    if (!planned.pixels.empty()) {
        return {losslessImage(planned.pixels)};
    }
    const Bytes bytes = readFile(planned.file);
    if (const auto jpeg = jpegPicture(bytes)) {
        return {asImage(*jpeg, planned.file, bytes.size()), jpeg->facts.orientation};
    }
    if (const auto png = pngPicture(bytes)) {
        return {asImage(*png, bytes)};
    }
    if (isTiff(bytes)) {
        return {tiffImage(planned.file, planned.part),
                tiffPicture(planned.file, planned.part).orientation};
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
    Drawing(QPDF& document, const QPDFObjectHandle::Rectangle& place, bool mirrored)
      : document_(document) {
        const double width = place.urx - place.llx;
        const double height = place.ury - place.lly;
        content_ = "q\n" + (mirrored ? matrix(-width, height, place.urx, place.lly)
                                     : matrix(width, height, place.llx, place.lly));
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

// In the middle of the page.
QPDFObjectHandle::Rectangle placeOf(const Millimetres& picture, const Millimetres& page) {
    const double width = page.width * kPointsPerMillimetre;
    const double height = page.height * kPointsPerMillimetre;
    if (picture.width <= 0 || picture.height <= 0) {
        return {0, 0, width, height};
    }
    const double across = picture.width * kPointsPerMillimetre / 2;
    const double down = picture.height * kPointsPerMillimetre / 2;
    return {width / 2 - across, height / 2 - down, width / 2 + across, height / 2 + down};
}

} // namespace

PicturePage addPicturePage(QPDF& document, const PlannedPage& planned) {
    if (const auto layers = planned.layers ? planned.layers() : std::nullopt) {
        const auto place = placeOf(planned.picture, planned.size);
        Drawing drawing(document, place, false);
        drawLayers(drawing, *layers);
        return {addPage(document, drawing, planned.size, 0), place};
    }
    Stored stored = storedPicture(planned);
    const Showing showing = showingOf(stored.orientation);
    const int turns = (showing.quarterTurns + planned.quarterTurns) % 4;
    const Millimetres size = turned(planned.size, turns);
    const auto place = placeOf(turned(planned.picture, turns), size);
    Drawing drawing(document, place, showing.mirrored);
    drawing.image(std::move(stored.image));
    return {addPage(document, drawing, size, turns), place};
}

} // namespace doccam::host

#include "codes/bar_place.h"
#include "codes/corners.h"
#include "codes/gs1_elements.h"
#include "codes/painting_out.h"
#include "codes/readers/reader.h"
#include "codes/text_encoding.h"

// The type of zxing's texts depends on it.
#define ZX_USE_UTF8
#include <ReadBarcode.h>
#include <opencv2/imgproc.hpp>

#include <cstdint>
#include <new>
#include <optional>
#include <utility>
#include <vector>

namespace doccam::codes {
namespace {

constexpr std::pair<ZXing::BarcodeFormat, Symbology> kFormats[] = {
    {ZXing::BarcodeFormat::EAN13, Symbology::kEan13},
    {ZXing::BarcodeFormat::EAN8, Symbology::kEan8},
    {ZXing::BarcodeFormat::UPCA, Symbology::kUpcA},
    {ZXing::BarcodeFormat::UPCE, Symbology::kUpcE},
    {ZXing::BarcodeFormat::Code128, Symbology::kCode128},
    {ZXing::BarcodeFormat::Code93, Symbology::kCode93},
    {ZXing::BarcodeFormat::Code39, Symbology::kCode39},
    {ZXing::BarcodeFormat::Codabar, Symbology::kCodabar},
    {ZXing::BarcodeFormat::ITF, Symbology::kItf},
    {ZXing::BarcodeFormat::QRCode, Symbology::kQr},
    {ZXing::BarcodeFormat::MicroQRCode, Symbology::kMicroQr},
    {ZXing::BarcodeFormat::DataMatrix, Symbology::kDataMatrix},
    {ZXing::BarcodeFormat::Aztec, Symbology::kAztec},
    {ZXing::BarcodeFormat::PDF417, Symbology::kPdf417},
    {ZXing::BarcodeFormat::MaxiCode, Symbology::kMaxiCode},
    {ZXing::BarcodeFormat::DataBar, Symbology::kDataBar},
    {ZXing::BarcodeFormat::DataBarExpanded, Symbology::kDataBarExpanded},
};

constexpr SymbologySet kEveryDataBar =
    asSet(Symbology::kDataBar) | asSet(Symbology::kDataBarExpanded);

// All codes of goods are enabled together, since each may look like part of another.
ZXing::BarcodeFormats formatsFor(SymbologySet wanted) {
    ZXing::BarcodeFormats formats;
    const bool retail = (wanted & kEveryRetail) != 0;
    for (const auto& [format, symbology] : kFormats) {
        if (isRetail(symbology) ? retail : contains(wanted, symbology)) {
            formats |= format;
        }
    }
    return formats;
}

std::optional<Symbology> symbologyOf(ZXing::BarcodeFormat format) {
    for (const auto& [theirs, ours] : kFormats) {
        if (theirs == format) {
            return ours;
        }
    }
    return std::nullopt;
}

ZXing::Binarizer binarizerFor(Threshold threshold) {
    switch (threshold) {
    case Threshold::kGlobal:
        return ZXing::Binarizer::GlobalHistogram;
    case Threshold::kGiven:
        return ZXing::Binarizer::FixedThreshold;
    default:
        return ZXing::Binarizer::LocalAverage;
    }
}

ZXing::DecodeHints hintsFor(ZXing::BarcodeFormats formats, ReadingMode mode) {
    const bool full = mode.effort == Effort::kFull;
    return ZXing::DecodeHints()
        .setFormats(formats)
        .setTryHarder(true)
        .setTryRotate(full)
        .setTryDownscale(full)
        .setBinarizer(binarizerFor(mode.threshold))
        .setEanAddOnSymbol(mode.addonsRequired ? ZXing::EanAddOnSymbol::Require
                                               : ZXing::EanAddOnSymbol::Read)
        .setMinLineCount(static_cast<std::uint8_t>(mode.lines))
        .setReturnCodabarStartEnd(true);
}

// An add-on follows a blank, which no code of goods has.
void partAddon(Sighting& seen) {
    const std::size_t blank = seen.text.find(' ');
    if (isRetail(seen.symbology) && blank != std::string::npos) {
        seen.addon = seen.text.substr(blank + 1);
        seen.text.resize(blank);
        seen.bytes = seen.text;
    }
}

// zxing leaves a DataBar's identifier out, and puts those of an expanded one in parentheses.
void normalizeDataBar(Sighting& seen) {
    if (seen.symbology == Symbology::kDataBar) {
        seen.text = "01" + seen.text;
    } else if (seen.symbology == Symbology::kDataBarExpanded) {
        seen.text = elementStringOf(seen.text).value_or(seen.text);
    } else {
        return;
    }
    seen.bytes = seen.text;
}

Sighting sightingOf(const ZXing::Result& result, Symbology symbology) {
    Sighting seen;
    seen.symbology = symbology;
    seen.bytes.assign(result.bytes().begin(), result.bytes().end());
    seen.text = result.text();
    if (!isUtf8(seen.text)) {
        seen.text = asUtf8(seen.bytes);
    }
    partAddon(seen);
    normalizeDataBar(seen);
    for (std::size_t i = 0; i < seen.corners.size(); ++i) {
        const ZXing::PointI corner = result.position()[static_cast<int>(i)];
        seen.corners[i] = {static_cast<double>(corner.x), static_cast<double>(corner.y)};
    }
    seen.lines = result.lineCount();
    seen.reader = ReaderName::kZxing;
    return seen;
}

ZXing::ImageView viewOf(const cv::Mat& grey) {
    return {grey.data, grey.cols, grey.rows, ZXing::ImageFormat::Lum,
            static_cast<int>(grey.step[0])};
}

// The decoder of expanded DataBars throws at some wrong rows: then without the reduced picture, and
// at last nothing.
ZXing::Results resultsOf(const cv::Mat& grey, const ZXing::DecodeHints& hints) {
    try {
        return ZXing::ReadBarcodes(viewOf(grey), hints);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) { // not all that it throws is a std::exception
        return hints.tryDownscale()
                   ? resultsOf(grey, ZXing::DecodeHints(hints).setTryDownscale(false))
                   : ZXing::Results();
    }
}

void addSightings(Sightings& found, const ZXing::Results& results) {
    for (const ZXing::Result& result : results) {
        const auto symbology = symbologyOf(result.format());
        if (symbology && result.isValid()) {
            found.push_back(sightingOf(result, *symbology));
        }
    }
}

// A MaxiCode is read in pictures of nothing else, without its place.
void placeMaxiCode(const cv::Mat& grey, Sighting& seen) {
    cv::Mat ink;
    cv::threshold(grey, ink, 0, 255, cv::THRESH_BINARY_INV | cv::THRESH_OTSU);
    const cv::Rect bounds = cv::boundingRect(ink);
    const cv::Point2d low = bounds.tl();
    const cv::Point2d high = bounds.br();
    seen.corners = {low, {high.x, low.y}, high, {low.x, high.y}};
}

// Gives the code the corners of its bars, since one that is read alone has the place of two lines.
void placeBars(const cv::Mat& grey, Sighting& seen) {
    const cv::Point2d from = (seen.corners[0] + seen.corners[3]) / 2;
    const cv::Point2d to = (seen.corners[1] + seen.corners[2]) / 2;
    if (const auto bars = barsAcross(grey, from, to)) {
        seen.corners = *bars;
    }
}

// The rows of a stacked one are above each other; the place is between the first and the last.
void placeDataBar(const cv::Mat& grey, Sighting& seen) {
    std::vector<cv::Point2d> points(seen.corners.begin(), seen.corners.end());
    const cv::Point2d reading = seen.corners[1] - seen.corners[0];
    for (const auto& [left, right] : {std::pair(seen.corners[0], seen.corners[1]),
                                      std::pair(seen.corners[3], seen.corners[2])}) {
        if (const auto bars = barsAcross(grey, left, right)) {
            points.insert(points.end(), bars->begin(), bars->end());
        }
    }
    seen.corners = rectangleAround(points, reading);
}

void place(const cv::Mat& grey, Sighting& seen) {
    if (contains(kEveryDataBar, seen.symbology)) {
        placeDataBar(grey, seen);
    } else {
        placeBars(grey, seen);
    }
}

// One after the other, each painted out before the next is read: zxing 1.4 ends the process when it
// compares two linear codes of the same content.
void addLinear(Sightings& found, const cv::Mat& grey, const ZXing::DecodeHints& hints) {
    constexpr int kMaximumCodes = 64;
    cv::Mat rest = grey;
    for (int count = 0; count < kMaximumCodes; ++count) {
        const std::size_t before = found.size();
        addSightings(found, resultsOf(rest, hints));
        if (found.size() == before) {
            return;
        }
        place(grey, found.back());
        if (count == 0) {
            rest = grey.clone();
        }
        paintOut(rest, found.back());
    }
}

} // namespace

Sightings readWithZxing(const cv::Mat& grey, SymbologySet wanted, ReadingMode mode) {
    Sightings found;
    // No formats would mean all of them.
    if (const auto formats = formatsFor(wanted & kEveryMatrix); !formats.empty()) {
        addSightings(found, resultsOf(grey, hintsFor(formats, mode)));
        for (Sighting& seen : found) {
            if (seen.symbology == Symbology::kMaxiCode) {
                placeMaxiCode(grey, seen);
            }
        }
    }
    if (const auto formats = formatsFor(wanted & kEveryLinear & ~kEveryDataBar); !formats.empty()) {
        addLinear(found, grey, hintsFor(formats, mode).setMaxNumberOfSymbols(1));
    }
    // Already the second line of some DataBars would be compared with the first.
    if (const auto formats = formatsFor(wanted & kEveryDataBar); !formats.empty()) {
        addLinear(found, grey, hintsFor(formats, mode).setMaxNumberOfSymbols(1).setMinLineCount(1));
    }
    return found;
}

} // namespace doccam::codes

#include "documents/layers/layers.h"

#include "base/pictures/jpeg_writer.h"
#include "documents/layers/background.h"
#include "documents/layers/coarse_page.h"
#include "documents/layers/fax_size.h"
#include "documents/layers/ink_colours.h"
#include "documents/layers/ink_masks.h"
#include "documents/layers/local_contrast.h"
#include "documents/layers/picture_regions.h"
#include "documents/layers/solid_fills.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <utility>

namespace doccam::host {
namespace {

constexpr std::size_t kPageBytes = 60000;         // all layers of an A4 page
constexpr std::size_t kPicturePageBytes = 100000; // the same with pictures
constexpr std::size_t kPrintBytes = 56000;        // of these, for print
constexpr std::size_t kLeastPrintBytes = 40000;
constexpr std::size_t kBytesAround = 300; // a mask, in a PDF
constexpr int kGroundQuality = 55;
constexpr int kPictureQuality = 80;
constexpr double kPicturesFinerBy = 1.5; // than the coarse page
constexpr double kFillsFinerBy = 0.8;
constexpr double kTooLarge = 1.6;   // a background, of its bytes
constexpr double kCoarser = 0.8;    // the next try
constexpr double kPhotograph = 0.5; // of the page is pictures
constexpr double kPaperRank = 0.9;  // of the page's levels, the paper's
constexpr double kDarkerThanPaper = 0.75;
constexpr double kMuch = 0.25;       // of the page
constexpr double kRemains = 1.2;     // millimetres
constexpr double kCloseToInk = 0.8;  // millimetres
constexpr double kInchAcross = 25.4; // millimetres
constexpr double kLeastDpi = 120;    // strokes of coarser pages are but shades
constexpr double kMostDpi = 1200;
constexpr int kBlur = 5; // pixels, as far as the blurred edges of ink reach in both ways

cv::Mat greyOf(const cv::Mat& page) {
    cv::Mat grey = page;
    if (page.channels() == 3) {
        cv::cvtColor(page, grey, cv::COLOR_BGR2GRAY);
    }
    return grey;
}

// A page on its way into layers.
class Splitting {
  public:
    Splitting(const cv::Mat& page, double dpi)
      : page_(page)
      , grey_(greyOf(page))
      , dpi_(dpi)
      , coarse_(coarsePage(page, grey_, dpi))
      , pictures_(pictureRegions(coarse_))
      , hasPictures_(cv::countNonZero(pictures_) > 0) {}

    bool isPhotograph() const { return cv::mean(pictures_)[0] > 255 * kPhotograph; }

    std::optional<Layers> layers() const;

  private:
    InkMasks masksOfPixels(const InkLevels& levels) const;
    cv::Mat hiddenBy(const InkMasks& masks, const InkedPage& inked) const;
    bool isMostlyElse(const cv::Mat& ground, const cv::Mat& fills) const;
    cv::Mat cleanGround(const cv::Mat& hidden, const cv::Mat& kept, double finer) const;
    std::vector<unsigned char> background(const cv::Mat& hidden) const;
    void addInks(const InkMasks& masks, const cv::Mat& ground, std::vector<Ink>& inks) const;
    std::vector<Ink> inks(const InkLevels& levels, const cv::Mat& ground,
                          const std::vector<SolidFill>& fills, std::size_t maximumBytes) const;

    // Larger pages may take more, which cannot be told from their pixels, but from their size.
    std::size_t forThisPage(std::size_t bytes) const {
        constexpr double kA4 = 8.27 * 11.69; // square inches
        const double area = static_cast<double>(page_.total()) / (dpi_ * dpi_);
        return static_cast<std::size_t>(static_cast<double>(bytes) * std::max(1.0, area / kA4));
    }

    const cv::Mat& page_;
    cv::Mat grey_;
    double dpi_;
    CoarsePage coarse_;
    cv::Mat pictures_;
    bool hasPictures_;
};

InkMasks Splitting::masksOfPixels(const InkLevels& levels) const {
    InkMasks masks = inkMasksAt(1, grey_, coarse_, levels);
    if (masks.light.empty()) {
        masks.light = cv::Mat::zeros(masks.dark.size(), CV_8U);
    }
    return masks;
}

cv::Mat withEdges(const cv::Mat& ink) {
    cv::Mat wide;
    cv::dilate(ink, wide, squareKernel(kBlur));
    return wide;
}

// Where ink or its blurred edge lies, in the page's pixels. What is too faint or small to become
// ink stays to be seen, unless it is close to ink.
cv::Mat Splitting::hiddenBy(const InkMasks& masks, const InkedPage& inked) const {
    const cv::Mat ink =
        withoutGrain(masks.dark, inked, false) | withoutGrain(masks.light, inked, true);
    cv::Mat nearInk;
    const int close = cvRound(kCloseToInk / kInchAcross * dpi_);
    cv::dilate(ink, nearInk, squareKernel(2 * close + 1));
    // At the page's edge, what lies beside the sheet shows.
    cv::rectangle(nearInk, {0, 0, nearInk.cols, nearInk.rows}, cv::Scalar::all(255), 2 * close + 1);
    return withEdges(ink | ((masks.dark | masks.light) & nearInk));
}

cv::Mat Splitting::cleanGround(const cv::Mat& hidden, const cv::Mat& kept, double finer) const {
    const cv::Size size(std::min(cvRound(coarse_.grey.cols * finer), page_.cols),
                        std::min(cvRound(coarse_.grey.rows * finer), page_.rows));
    cv::Mat ground = groundOf(page_, hidden, size);
    cv::Mat keptHere;
    cv::resize(kept, keptHere, size, 0, 0, cv::INTER_NEAREST);
    removeRemains(ground, oddCells(coarse_, kRemains * finer), keptHere);
    return ground;
}

std::vector<unsigned char> Splitting::background(const cv::Mat& hidden) const {
    const cv::Mat faint = faintPrint(groundOf(page_, hidden, coarse_.grey.size()), hidden,
                                     oddCells(coarse_, kRemains));
    const bool isFaint = cv::countNonZero(faint) > 0;
    const double finer = hasPictures_ ? kPicturesFinerBy : (isFaint ? 1 : kFillsFinerBy);
    cv::Mat ground = cleanGround(hidden, pictures_ | faint, finer);
    if (isWhite(ground)) {
        return {};
    }
    const int quality = hasPictures_ || isFaint ? kPictureQuality : kGroundQuality;
    const std::size_t maximum =
        forThisPage(hasPictures_ ? kPicturePageBytes - kPrintBytes : kPageBytes - kLeastPrintBytes);
    auto file = encodedGround(ground, quality, maximum);
    if (static_cast<double>(file.size()) > kTooLarge * static_cast<double>(maximum)) {
        ground = cleanGround(hidden, pictures_ | faint, finer * kCoarser);
        file = encodedGround(ground, quality, maximum);
    }
    return file;
}

void Splitting::addInks(const InkMasks& masks, const cv::Mat& ground,
                        std::vector<Ink>& inks) const {
    const InkedPage inked{page_, ground, dpi_};
    std::vector<Ink> dark = inksByColour(masks.dark, inked, false);
    std::move(dark.begin(), dark.end(), std::back_inserter(inks));
    if (!masks.light.empty()) {
        std::vector<Ink> light = inksByColour(masks.light, inked, true);
        std::move(light.begin(), light.end(), std::back_inserter(inks));
    }
}

std::size_t inkBytes(const std::vector<Ink>& inks) {
    std::size_t bytes = 0;
    for (const Ink& ink : inks) {
        bytes += kBytesAround + faxSize(ink.mask);
    }
    return bytes;
}

// The fills and the print, whose masks together take about that many bytes.
std::vector<Ink> Splitting::inks(const InkLevels& levels, const cv::Mat& ground,
                                 const std::vector<SolidFill>& fills,
                                 std::size_t maximumBytes) const {
    const InkMasks masks = inkMasks(grey_, coarse_, levels, dpi_, maximumBytes);
    std::vector<Ink> inks = inksOf(fills, page_, coarse_, masks.dark.size());
    addInks(masks, ground, inks);
    return inks;
}

// Whether much of the page is neither paper nor of one colour, as around a photographed sheet.
bool Splitting::isMostlyElse(const cv::Mat& ground, const cv::Mat& fills) const {
    cv::Mat grey = greyOf(ground);
    cv::Mat ordered;
    cv::sort(grey.clone().reshape(1, 1), ordered, cv::SORT_EVERY_ROW + cv::SORT_ASCENDING);
    const int paper = ordered.at<unsigned char>(static_cast<int>(kPaperRank * ordered.cols));
    const cv::Mat dark = (grey < kDarkerThanPaper * paper) & ~fills & ~pictures_;
    return cv::countNonZero(dark) > kMuch * static_cast<double>(dark.total());
}

std::optional<Layers> Splitting::layers() const {
    InkLevels levels = inkLevels(grey_, coarse_, pictures_);
    InkMasks masks = masksOfPixels(levels);
    const cv::Mat ground = cleanGround(withEdges(masks.dark | masks.light), pictures_, 1);
    const std::vector<SolidFill> fills = solidFills(coarse_, ground, pictures_);
    const FilledCells filled = cellsOf(fills, ground);
    if (isMostlyElse(ground, filled.covered)) {
        return std::nullopt;
    }
    adaptToFills(levels, ground, filled.darkCovered, filled.darkInside);
    masks = masksOfPixels(levels);
    const InkedPage inked{page_, ground, dpi_};
    cv::Mat hidden = hiddenBy(masks, inked);
    hidden |= stretched(filled.covered, coarse_, page_.size(), 1) > 0;

    Layers layers;
    layers.background = background(hidden);
    const std::size_t all = forThisPage(hasPictures_ ? kPicturePageBytes : kPageBytes);
    const std::size_t left =
        std::max(all - std::min(all, layers.background.size()), forThisPage(kLeastPrintBytes));
    layers.inks = inks(levels, ground, fills, left);
    // The masks of several inks take more than one mask of all of them.
    if (const std::size_t bytes = inkBytes(layers.inks); bytes > left) {
        layers.inks = inks(levels, ground, fills, left * left / bytes);
    }
    return layers;
}

std::size_t bytesOf(const Layers& layers) {
    return layers.background.size() + inkBytes(layers.inks);
}

// What the page takes as it is usually written.
std::size_t usualBytes(const cv::Mat& page) {
    const cv::Mat grey = greyOf(page);
    if (cv::countNonZero((grey != 0) & (grey != 255)) == 0) {
        return faxSize(~grey);
    }
    constexpr int kQuality = 85;
    const auto file = jpegOf(page, kQuality);
    return file ? file->size() : std::numeric_limits<std::size_t>::max();
}

} // namespace

std::optional<Layers> splitLayers(const cv::Mat& page, double dpi) {
    if (page.empty() || (page.type() != CV_8UC1 && page.type() != CV_8UC3) || !(dpi >= kLeastDpi)) {
        return std::nullopt;
    }
    const Splitting splitting(page, std::min(dpi, kMostDpi));
    if (splitting.isPhotograph()) {
        return std::nullopt;
    }
    std::optional<Layers> layers = splitting.layers();
    return layers && bytesOf(*layers) < usualBytes(page) ? layers : std::nullopt;
}

} // namespace doccam::host

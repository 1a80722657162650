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
constexpr double kPhotograph = 0.5; // of the page is pictures
constexpr int kUsualQuality = 85;   // of the JPEG that layers must beat
constexpr double kRemains = 1.2;    // millimetres
constexpr double kLeastDpi = 120;   // strokes of coarser pages are but shades
constexpr double kMostDpi = 1200;
constexpr int kBlur = 5; // pixels, as far as the blurred edges of ink reach in both ways

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

    Layers layers() const;

  private:
    static cv::Mat greyOf(const cv::Mat& page) {
        cv::Mat grey = page;
        if (page.channels() == 3) {
            cv::cvtColor(page, grey, cv::COLOR_BGR2GRAY);
        }
        return grey;
    }

    cv::Mat hiddenBy(const InkLevels& levels) const;
    cv::Mat cleanGround(const cv::Mat& hidden, double finer) const;
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

// Where ink or its blurred edge lies, in the page's pixels.
cv::Mat Splitting::hiddenBy(const InkLevels& levels) const {
    const InkMasks masks = inkMasksAt(1, grey_, coarse_, levels);
    cv::Mat hidden = masks.light.empty() ? masks.dark : cv::Mat(masks.dark | masks.light);
    cv::Mat wide;
    cv::dilate(hidden, wide, cv::getStructuringElement(cv::MORPH_RECT, {kBlur, kBlur}));
    return wide;
}

cv::Mat Splitting::cleanGround(const cv::Mat& hidden, double finer) const {
    const cv::Size size(std::min(cvRound(coarse_.grey.cols * finer), page_.cols),
                        std::min(cvRound(coarse_.grey.rows * finer), page_.rows));
    cv::Mat ground = groundOf(page_, hidden, size);
    removeRemains(ground, oddCells(coarse_, kRemains * finer), pictures_);
    return ground;
}

std::vector<unsigned char> Splitting::background(const cv::Mat& hidden) const {
    const cv::Mat ground = cleanGround(hidden, hasPictures_ ? kPicturesFinerBy : kFillsFinerBy);
    if (isWhite(ground)) {
        return {};
    }
    return hasPictures_
               ? encodedGround(ground, kPictureQuality,
                               forThisPage(kPicturePageBytes - kPrintBytes))
               : encodedGround(ground, kGroundQuality, forThisPage(kPageBytes - kLeastPrintBytes));
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

Layers Splitting::layers() const {
    InkLevels levels = inkLevels(grey_, coarse_, pictures_);
    cv::Mat hidden = hiddenBy(levels);
    const cv::Mat ground = cleanGround(hidden, 1);
    const std::vector<SolidFill> fills = solidFills(coarse_, ground, pictures_);
    const FilledCells filled = cellsOf(fills, ground);
    adaptToFills(levels, ground, filled.darkCovered, filled.darkInside);
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

} // namespace

std::optional<Layers> splitLayers(const cv::Mat& page, double dpi) {
    if (page.empty() || (page.type() != CV_8UC1 && page.type() != CV_8UC3) || !(dpi >= kLeastDpi)) {
        return std::nullopt;
    }
    const Splitting splitting(page, std::min(dpi, kMostDpi));
    if (splitting.isPhotograph()) {
        return std::nullopt;
    }
    Layers layers = splitting.layers();
    const auto usual = jpegOf(page, kUsualQuality);
    if (usual && bytesOf(layers) >= usual->size()) {
        return std::nullopt;
    }
    return layers;
}

} // namespace doccam::host

#include "base/handles/zbar_handles.h"
#include "codes/bar_place.h"
#include "codes/corners.h"
#include "codes/gs1_elements.h"
#include "codes/readers/reader.h"
#include "codes/text_encoding.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <optional>
#include <utility>
#include <vector>

namespace doccam::codes {
namespace {

constexpr std::pair<zbar::zbar_symbol_type_t, Symbology> kTypes[] = {
    {zbar::ZBAR_EAN13, Symbology::kEan13},
    {zbar::ZBAR_EAN8, Symbology::kEan8},
    {zbar::ZBAR_UPCA, Symbology::kUpcA},
    {zbar::ZBAR_UPCE, Symbology::kUpcE},
    {zbar::ZBAR_DATABAR, Symbology::kDataBar},
    {zbar::ZBAR_DATABAR_EXP, Symbology::kDataBarExpanded},
    {zbar::ZBAR_CODE128, Symbology::kCode128},
    {zbar::ZBAR_CODE93, Symbology::kCode93},
    {zbar::ZBAR_CODE39, Symbology::kCode39},
    {zbar::ZBAR_CODABAR, Symbology::kCodabar},
    {zbar::ZBAR_I25, Symbology::kItf},
    {zbar::ZBAR_QRCODE, Symbology::kQr},
};

std::optional<Symbology> symbologyOf(zbar::zbar_symbol_type_t type) {
    for (const auto& [theirs, ours] : kTypes) {
        if (theirs == type) {
            return ours;
        }
    }
    return std::nullopt;
}

template <typename Handle>
Handle orOutOfMemory(Handle handle) {
    if (!handle) {
        throw std::bad_alloc();
    }
    return handle;
}

void enable(zbar::zbar_image_scanner_t* scanner, zbar::zbar_symbol_type_t type, bool on) {
    zbar::zbar_image_scanner_set_config(scanner, type, zbar::ZBAR_CFG_ENABLE, on ? 1 : 0);
}

// All codes of goods are enabled together, since each may look like part of another.
ZbarScanner scannerFor(SymbologySet wanted) {
    auto scanner = orOutOfMemory(ZbarScanner(zbar::zbar_image_scanner_create()));
    const bool retail = (wanted & kEveryRetail) != 0;
    enable(scanner.get(), zbar::ZBAR_NONE, false);
    for (const auto& [type, symbology] : kTypes) {
        enable(scanner.get(), type, isRetail(symbology) ? retail : contains(wanted, symbology));
    }
    // Not as composites, which zbar makes of any code and add-on in a picture.
    enable(scanner.get(), zbar::ZBAR_EAN2, retail);
    enable(scanner.get(), zbar::ZBAR_EAN5, retail);
    zbar::zbar_image_scanner_set_config(scanner.get(), zbar::ZBAR_QRCODE, zbar::ZBAR_CFG_BINARY, 1);
    return scanner;
}

// Refers to the pixels of grey, which must be continuous.
ZbarPicture pictureOf(const cv::Mat& grey) {
    auto picture = orOutOfMemory(ZbarPicture(zbar::zbar_image_create()));
    zbar::zbar_image_set_size(picture.get(), static_cast<unsigned>(grey.cols),
                              static_cast<unsigned>(grey.rows));
    zbar::zbar_image_set_format(picture.get(), zbar_fourcc('Y', '8', '0', '0'));
    zbar::zbar_image_set_data(picture.get(), grey.data, grey.total(), nullptr);
    return picture;
}

cv::Point2d readingDirection(const zbar::zbar_symbol_t* symbol) {
    switch (zbar::zbar_symbol_get_orientation(symbol)) {
    case zbar::ZBAR_ORIENT_RIGHT:
        return {0, 1};
    case zbar::ZBAR_ORIENT_DOWN:
        return {-1, 0};
    case zbar::ZBAR_ORIENT_LEFT:
        return {0, -1};
    default:
        return {1, 0};
    }
}

std::vector<cv::Point2d> pointsOf(const zbar::zbar_symbol_t* symbol) {
    std::vector<cv::Point2d> points;
    for (unsigned i = 0; i < zbar::zbar_symbol_get_loc_size(symbol); ++i) {
        points.emplace_back(zbar::zbar_symbol_get_loc_x(symbol, i),
                            zbar::zbar_symbol_get_loc_y(symbol, i));
    }
    return points;
}

// The longest of the scan lines, whose ends are near each other in the list of points.
std::pair<cv::Point2d, cv::Point2d> longestLine(const std::vector<cv::Point2d>& points) {
    constexpr std::size_t kNear = 3;
    std::pair<cv::Point2d, cv::Point2d> longest{points[0], points[0]};
    double length = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (std::size_t j = i + 1; j < std::min(points.size(), i + 1 + kNear); ++j) {
            if (cv::norm(points[j] - points[i]) > length) {
                length = cv::norm(points[j] - points[i]);
                longest = {points[i], points[j]};
            }
        }
    }
    return longest;
}

Corners barCorners(const cv::Mat& grey, const std::vector<cv::Point2d>& points,
                   cv::Point2d reading) {
    auto [from, to] = longestLine(points);
    if ((to - from).dot(reading) < 0) {
        std::swap(from, to);
    }
    const auto bars = barsThrough(grey, points, from, to);
    return bars ? *bars : rectangleAround(points, reading);
}

// Of linear codes, zbar reports ends of scan lines; of QR codes the corners, anticlockwise.
Corners cornersOf(const cv::Mat& grey, const zbar::zbar_symbol_t* symbol, bool linear) {
    const std::vector<cv::Point2d> points = pointsOf(symbol);
    if (points.empty()) {
        return {};
    }
    if (linear) {
        return barCorners(grey, points, readingDirection(symbol));
    }
    return points.size() == 4 ? Corners{points[0], points[3], points[2], points[1]}
                              : rectangleAround(points, readingDirection(symbol));
}

std::string dataOf(const zbar::zbar_symbol_t* symbol) {
    return {zbar::zbar_symbol_get_data(symbol), zbar::zbar_symbol_get_data_length(symbol)};
}

Sighting sightingOf(const cv::Mat& grey, const zbar::zbar_symbol_t* symbol, Symbology symbology) {
    Sighting seen;
    seen.symbology = symbology;
    seen.bytes = dataOf(symbol);
    seen.text = asUtf8(seen.bytes);
    seen.corners = cornersOf(grey, symbol, isLinear(symbology));
    seen.lines = isLinear(symbology) ? zbar::zbar_symbol_get_quality(symbol) : 0;
    seen.reader = ReaderName::kZbar;
    return seen;
}

struct Addon {
    std::string digits;
    cv::Point2d middle;
};

// Nothing if it is none, or read on too few lines to be believed.
std::optional<Addon> addonOf(const zbar::zbar_symbol_t* symbol) {
    constexpr int kLines = 3;
    const auto type = zbar::zbar_symbol_get_type(symbol);
    const std::vector<cv::Point2d> points = pointsOf(symbol);
    if ((type != zbar::ZBAR_EAN2 && type != zbar::ZBAR_EAN5) || points.empty() ||
        zbar::zbar_symbol_get_quality(symbol) < kLines) {
        return std::nullopt;
    }
    cv::Point2d sum;
    for (const cv::Point2d point : points) {
        sum += point;
    }
    return Addon{dataOf(symbol), sum / static_cast<double>(points.size())};
}

// zbar joins rows of different stacked codes, and rows of one in a wrong order.
bool isSound(const Sighting& seen) {
    return seen.symbology != Symbology::kDataBarExpanded || isElementString(seen.text);
}

// Whether an add-on stands beside the code: right of it as it is read, at its height.
bool isBeside(const Corners& code, cv::Point2d addon) {
    const cv::Point2d along = code[1] - code[0];
    const cv::Point2d down = code[3] - code[0];
    const cv::Point2d away = addon - code[0];
    const double right = away.dot(along) / std::max(along.dot(along), 1.0);
    const double below = away.dot(down) / std::max(down.dot(down), 1.0);
    return right > 1.02 && right < 1.9 && below > -0.2 && below < 1.3;
}

void giveAddons(Sightings& found, const std::vector<Addon>& addons) {
    for (Sighting& seen : found) {
        for (const Addon& addon : addons) {
            if (isRetail(seen.symbology) && isBeside(seen.corners, addon.middle)) {
                seen.addon = addon.digits;
            }
        }
    }
}

} // namespace

Sightings readWithZbar(const cv::Mat& grey, SymbologySet wanted) {
    Sightings found;
    std::vector<Addon> addons;
    const ZbarScanner scanner = scannerFor(wanted);
    const cv::Mat packed = grey.isContinuous() ? grey : grey.clone();
    const ZbarPicture picture = pictureOf(packed);
    if (zbar::zbar_scan_image(scanner.get(), picture.get()) < 1) {
        return found;
    }
    const auto* symbol =
        zbar::zbar_symbol_set_first_symbol(zbar::zbar_image_get_symbols(picture.get()));
    for (; symbol != nullptr; symbol = zbar::zbar_symbol_next(symbol)) {
        if (const auto symbology = symbologyOf(zbar::zbar_symbol_get_type(symbol))) {
            if (Sighting seen = sightingOf(packed, symbol, *symbology); isSound(seen)) {
                found.push_back(std::move(seen));
            }
        } else if (auto addon = addonOf(symbol)) {
            addons.push_back(*std::move(addon));
        }
    }
    giveAddons(found, addons);
    return found;
}

} // namespace doccam::codes

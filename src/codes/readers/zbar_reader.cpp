#include "base/handles/zbar_handles.h"
#include "codes/bar_place.h"
#include "codes/corners.h"
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
    const auto bars = barsAcross(grey, from, to);
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

// A code of goods and its add-on.
std::optional<Sighting> compositeOf(const cv::Mat& grey, const zbar::zbar_symbol_t* symbol) {
    std::optional<Sighting> seen;
    std::string addon;
    const auto* part = zbar::zbar_symbol_set_first_symbol(zbar::zbar_symbol_get_components(symbol));
    for (; part != nullptr; part = zbar::zbar_symbol_next(part)) {
        const auto type = zbar::zbar_symbol_get_type(part);
        if (const auto symbology = symbologyOf(type)) {
            seen = sightingOf(grey, part, *symbology);
        } else if (type == zbar::ZBAR_EAN2 || type == zbar::ZBAR_EAN5) {
            addon = dataOf(part);
        }
    }
    if (seen) {
        seen->addon = addon;
    }
    return seen;
}

// Nothing for an add-on alone.
std::optional<Sighting> sightingOf(const cv::Mat& grey, const zbar::zbar_symbol_t* symbol) {
    const auto type = zbar::zbar_symbol_get_type(symbol);
    if (type == zbar::ZBAR_COMPOSITE) {
        return compositeOf(grey, symbol);
    }
    const auto symbology = symbologyOf(type);
    return symbology ? std::optional(sightingOf(grey, symbol, *symbology)) : std::nullopt;
}

} // namespace

Sightings readWithZbar(const cv::Mat& grey, SymbologySet wanted) {
    Sightings found;
    const ZbarScanner scanner = scannerFor(wanted);
    const cv::Mat packed = grey.isContinuous() ? grey : grey.clone();
    const ZbarPicture picture = pictureOf(packed);
    if (zbar::zbar_scan_image(scanner.get(), picture.get()) < 1) {
        return found;
    }
    const auto* symbol =
        zbar::zbar_symbol_set_first_symbol(zbar::zbar_image_get_symbols(picture.get()));
    for (; symbol != nullptr; symbol = zbar::zbar_symbol_next(symbol)) {
        if (auto seen = sightingOf(packed, symbol)) {
            found.push_back(*std::move(seen));
        }
    }
    return found;
}

} // namespace doccam::codes

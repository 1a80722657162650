#include "docimage/turn/turned_picture.h"

#include "base/pixel.h"
#include "base/shared_work.h"

#include <opencv2/imgproc.hpp>

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace doccam {
namespace {

constexpr int kMaximumSide = 16384;
constexpr std::size_t kMaximumBytes = std::numeric_limits<int>::max();

constexpr double kPlaceUnits = 1 << kPlaceShift;
constexpr int kHalfFraction = 1 << (kPlaceShift - kFractionShift - 1);

int inPlaceUnits(double pixels) {
    return cv::saturate_cast<int>(pixels * kPlaceUnits);
}

int wholePixels(double length) {
    if (!(length <= std::numeric_limits<int>::max())) {
        CV_Error(cv::Error::StsOutOfRange, "the turned picture has no size");
    }
    return static_cast<int>(length);
}

double radiansOf(float degrees) {
    return CV_PI * degrees / 180.0;
}

// OpenCV's operations in OpenCV's order, since rounding would show any other.
cv::Matx23d inverseOf(const cv::Mat& map) {
    const cv::Matx23d m = map;
    const double determinant = m(0, 0) * m(1, 1) - m(0, 1) * m(1, 0);
    const double scale = determinant != 0 ? 1.0 / determinant : 0;
    const double a = m(1, 1) * scale;
    const double b = m(0, 1) * -scale;
    const double c = m(1, 0) * -scale;
    const double d = m(0, 0) * scale;
    return {a, b, -a * m(0, 2) - b * m(1, 2), c, d, -c * m(0, 2) - d * m(1, 2)};
}

} // namespace

cv::Size canvasSize(cv::Size picture, double radians) {
    const double sine = std::abs(std::sin(radians));
    const double cosine = std::abs(std::cos(radians));
    return {wholePixels(picture.height * sine + picture.width * cosine),
            wholePixels(picture.width * sine + picture.height * cosine)};
}

cv::Mat turnOnto(cv::Size canvas, cv::Size picture, double degrees) {
    const cv::Point middle(picture.width / 2, picture.height / 2);
    const cv::Point shift((canvas.width - picture.width) / 2, (canvas.height - picture.height) / 2);
    cv::Mat map;
    cv::getRotationMatrix2D(middle, degrees, 1.0).convertTo(map, CV_32F);
    map.at<float>(0, 2) += static_cast<float>(shift.x);
    map.at<float>(1, 2) += static_cast<float>(shift.y);
    return map;
}

// A position in the source.
struct TurnedPicture::Place {
    int x() const { return across >> kPlaceShift; }

    int y() const { return down >> kPlaceShift; }

    int across, down;
};

bool TurnedPicture::canRender(const TurnedRegion& region) {
    const cv::Mat& pixels = region.pixels;
    return pixels.dims == 2 && pixels.type() == CV_8UC3 && !pixels.empty() &&
           region.size.width <= kMaximumSide && region.size.height <= kMaximumSide &&
           pixels.step[0] * static_cast<std::size_t>(pixels.rows) <= kMaximumBytes;
}

TurnedPicture::TurnedPicture(const TurnedRegion& region, float degrees)
  : source_(region.pixels)
  , canvas_(canvasSize(region.size, radiansOf(-degrees)))
  , map_(inverseOf(turnOnto(canvas_, region.size, -degrees)))
  , start_((1 << kPlaceShift) * -region.place + cv::Point(kHalfFraction, kHalfFraction)) {
    for (int x = 0; x < canvas_.width; ++x) {
        across_.push_back(inPlaceUnits(map_(0, 0) * x));
        down_.push_back(inPlaceUnits(map_(1, 0) * x));
    }
}

void TurnedPicture::render(const cv::Rect& part, cv::Mat& target, SampleOrder order) const {
    CV_Assert(target.type() == source_.type() && target.size() == part.size());
    CV_Assert((part & cv::Rect({}, canvas_)) == part);
    forEachRow(part.height, [&](int y) { renderRow(part, part.y + y, order, target.ptr(y)); });
}

TurnedPicture::Place TurnedPicture::placeOf(int x, int y) const {
    const auto column = static_cast<std::size_t>(x);
    return {inPlaceUnits(map_(0, 1) * y + map_(0, 2)) + start_.x + across_[column],
            inPlaceUnits(map_(1, 1) * y + map_(1, 2)) + start_.y + down_[column]};
}

// Whether all pixels that the kernels read around a place exist.
bool TurnedPicture::hasFullNeighbourhood(Place place) const {
    return place.x() >= 0 && place.x() + 2 < source_.cols && place.y() >= 0 &&
           place.y() + 1 < source_.rows;
}

// A row crosses the source at most once.
cv::Range TurnedPicture::columnsWithNeighbourhood(const cv::Rect& part, int y) const {
    cv::Range columns(part.x, part.x + part.width);
    while (!columns.empty() && !hasFullNeighbourhood(placeOf(columns.start, y))) {
        ++columns.start;
    }
    while (!columns.empty() && !hasFullNeighbourhood(placeOf(columns.end - 1, y))) {
        --columns.end;
    }
    return columns;
}

void TurnedPicture::renderRow(const cv::Rect& part, int y, SampleOrder order, uchar* row) const {
    const cv::Range amidst = columnsWithNeighbourhood(part, y);
    const auto pixelAt = [&](int x) { return row + std::ptrdiff_t{kChannels} * (x - part.x); };
    for (int x = part.x; x < amidst.start; ++x) {
        renderPixel(placeOf(x, y), order, pixelAt(x));
    }
    for (int x = amidst.end; x < part.x + part.width; ++x) {
        renderPixel(placeOf(x, y), order, pixelAt(x));
    }
    if (!amidst.empty()) {
        const auto first = static_cast<std::size_t>(amidst.start);
        const Place start = placeOf(amidst.start, y);
        widestKernels<allRotationKernels>().blend(
            {
                .source = source_.data,
                .step = static_cast<int>(source_.step[0]),
                .across = start.across - across_[first],
                .down = start.down - down_[first],
                .acrossFrom = &across_[first],
                .downFrom = &down_[first],
                .count = amidst.size(),
            },
            order, pixelAt(amidst.start));
    }
}

// Outside the source everything is black.
void TurnedPicture::renderPixel(Place place, SampleOrder order, uchar* pixel) const {
    static constexpr std::array<uchar, kChannels> kBlack{};
    const auto at = [&](int x, int y) {
        const bool inside = x >= 0 && x < source_.cols && y >= 0 && y < source_.rows;
        return inside ? source_.ptr(y, x) : kBlack.data();
    };
    const uchar* const ul = at(place.x(), place.y());
    const uchar* const ur = at(place.x() + 1, place.y());
    const uchar* const ll = at(place.x(), place.y() + 1);
    const uchar* const lr = at(place.x() + 1, place.y() + 1);
    const std::int16_t right = fractionOf(place.across);
    const std::int16_t below = fractionOf(place.down);
    for (int i = 0; i < kChannels; ++i) {
        const int to = order == SampleOrder::kKept ? i : kChannels - 1 - i;
        pixel[to] =
            blendDown(blendAlong(ul[i], ur[i], right), blendAlong(ll[i], lr[i], right), below);
    }
}

cv::Mat rotated(const cv::Mat& picture, float degrees) {
    const TurnedRegion whole{picture, {}, picture.size()};
    cv::Mat turned;
    if (TurnedPicture::canRender(whole)) {
        const TurnedPicture rendered(whole, degrees);
        turned.create(rendered.size(), picture.type());
        rendered.render({{}, rendered.size()}, turned, SampleOrder::kKept);
        return turned;
    }
    const cv::Size canvas = canvasSize(picture.size(), radiansOf(-degrees));
    cv::warpAffine(picture, turned, turnOnto(canvas, picture.size(), -degrees), canvas,
                   cv::INTER_LINEAR, cv::BORDER_CONSTANT, cv::Scalar(0));
    return turned;
}

} // namespace doccam

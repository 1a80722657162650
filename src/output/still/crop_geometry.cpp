#include "output/still/crop_geometry.h"

namespace doccam {
namespace {

constexpr int kStep = 4;
constexpr int kMargin = 4;

int inStepsOfFour(int length) {
    return length / kStep * kStep;
}

// The distance of the last negative coordinate from the frame.
int overhangLow(const SheetCorners& corners, int cv::Point::*axis) {
    int amount = 0;
    for (const cv::Point corner : corners) {
        amount = corner.*axis < 0 ? -(corner.*axis) : amount;
    }
    return amount;
}

// The distance of the last coordinate past the frame's length from the frame.
int overhangHigh(const SheetCorners& corners, int cv::Point::*axis, int length) {
    int amount = 0;
    for (const cv::Point corner : corners) {
        amount = corner.*axis > length ? corner.*axis - length : amount;
    }
    return amount;
}

void shift(SheetCorners& corners, int cv::Point::*axis, int amount) {
    for (cv::Point& corner : corners) {
        corner.*axis += amount;
    }
}

int clipped(int start, int length, int limit) {
    return start + length >= limit ? limit - start : length;
}

} // namespace

FittedCorners fitIntoFrame(SheetCorners corners, cv::Size frame) {
    BorderAmounts borders;
    borders.left = overhangLow(corners, &cv::Point::x);
    shift(corners, &cv::Point::x, borders.left);
    borders.right = overhangHigh(corners, &cv::Point::x, frame.width);
    borders.top = overhangLow(corners, &cv::Point::y);
    shift(corners, &cv::Point::y, borders.top);
    borders.bottom = overhangHigh(corners, &cv::Point::y, frame.height);
    return {borders, corners};
}

cv::Rect enlargedBox(cv::Rect box, cv::Size picture) {
    box.width = clipped(box.x, box.width + kMargin, picture.width);
    box.height = clipped(box.y, box.height + kMargin, picture.height);
    return box;
}

cv::Rect centredPage(cv::Size page, cv::Size picture) {
    const int x = (picture.width - page.width) / 2;
    const int y = (picture.height - page.height) / 2;
    return {x, y, clipped(x, inStepsOfFour(page.width) + kStep, picture.width),
            clipped(y, inStepsOfFour(page.height) + kStep, picture.height)};
}

cv::Size inStepsOfFour(cv::Size size) {
    return {inStepsOfFour(size.width), inStepsOfFour(size.height)};
}

} // namespace doccam

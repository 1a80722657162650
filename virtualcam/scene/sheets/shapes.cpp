#include "scene/sheets/shapes.h"

#include "scene/views/polygon.h"

#include <opencv2/imgproc.hpp>

#include <vector>

namespace doccam::virtualcam {

namespace {

// Where p lies after folding about the line from a to b.
cv::Point2d mirrored(cv::Point2d p, cv::Point2d a, cv::Point2d b) {
    const cv::Point2d along = b - a;
    const double part = (p - a).dot(along) / along.dot(along);
    return 2 * (a + along * part) - p;
}

void darken(cv::Mat& print, const std::vector<cv::Point2d>& polygon, double blur) {
    cv::Mat shade(print.size(), CV_8U, cv::Scalar(255));
    fillPolygon(shade, polygon, cv::Scalar(150), cv::LINE_AA);
    std::vector<cv::Point2f> points(polygon.begin(), polygon.end());
    const int margin = cvCeil(4 * blur);
    cv::Rect box = cv::boundingRect(points);
    box =
        cv::Rect(box.x - margin, box.y - margin, box.width + 2 * margin, box.height + 2 * margin) &
        cv::Rect({0, 0}, print.size());
    cv::Mat part = shade(box).clone();
    cv::GaussianBlur(part, part, {}, blur);
    cv::Mat wide;
    cv::merge(std::vector<cv::Mat>(3, part), wide);
    cv::Mat target = print(box);
    cv::multiply(target, wide, target, 1 / 255.0);
}

} // namespace

void roundCorners(LaidSheet& sheet, double millimetres) {
    const cv::Size size = sheet.print.size();
    const int radius = cvRound(millimetres * size.width / sheet.millimetres.width);
    sheet.opacity = cv::Mat(size, CV_8U, cv::Scalar(255));
    const cv::Size square(radius, radius);
    for (const bool right : {false, true}) {
        for (const bool bottom : {false, true}) {
            const cv::Rect box({right ? size.width - radius : 0, bottom ? size.height - radius : 0},
                               square);
            const cv::Point centre(right ? -1 : radius, bottom ? -1 : radius);
            cv::Mat corner = sheet.opacity(box);
            corner.setTo(0);
            cv::circle(corner, centre, radius, cv::Scalar(255), cv::FILLED, cv::LINE_AA);
        }
    }
}

void foldCorner(LaidSheet& sheet, int corner, cv::Size2d millimetres) {
    const cv::Size size = sheet.print.size();
    const double scale = size.width / sheet.millimetres.width;
    const bool right = corner == 1 || corner == 2;
    const bool bottom = corner >= 2;
    const cv::Point2d tip(right ? size.width - 0.5 : -0.5, bottom ? size.height - 0.5 : -0.5);
    const cv::Point2d a = tip + cv::Point2d((right ? -1 : 1) * millimetres.width * scale, 0);
    const cv::Point2d b = tip + cv::Point2d(0, (bottom ? -1 : 1) * millimetres.height * scale);
    const cv::Point2d landed = mirrored(tip, a, b);
    sheet.opacity = cv::Mat(size, CV_8U, cv::Scalar(255));
    fillPolygon(sheet.opacity, {tip, a, b}, cv::Scalar(0), cv::LINE_AA);
    sheet.print = sheet.print.clone();
    darken(sheet.print, {a, b, landed + (landed - tip) * 0.04}, 0.9 * scale);
    fillPolygon(sheet.print, {a, b, landed}, cv::Scalar(226, 230, 231), cv::LINE_AA);
    fillPolygon(sheet.print, {a, b, b + (landed - b) * 0.1, a + (landed - a) * 0.1},
                cv::Scalar(238, 241, 242), cv::LINE_AA);
}

} // namespace doccam::virtualcam

#include "colour_difference.h"

#include <opencv2/imgproc.hpp>

#include <cmath>

namespace doccam::test {

namespace {

constexpr double kDegree = CV_PI / 180;

double hue(double a, double b) {
    const double angle = std::atan2(b, a);
    return angle < 0 ? angle + 2 * CV_PI : angle;
}

double seventh(double chroma) {
    const double power = std::pow(chroma, 7);
    return std::sqrt(power / (power + std::pow(25.0, 7)));
}

double meanHue(double first, double second) {
    const double mean = (first + second) / 2;
    if (std::abs(first - second) <= CV_PI) {
        return mean;
    }
    return mean < CV_PI ? mean + CV_PI : mean - CV_PI;
}

double hueStep(double first, double second) {
    const double step = second - first;
    if (std::abs(step) <= CV_PI) {
        return step;
    }
    return step > 0 ? step - 2 * CV_PI : step + 2 * CV_PI;
}

cv::Mat blurred(const cv::Mat& picture) {
    cv::Mat result;
    cv::GaussianBlur(picture, result, {11, 11}, 1.5);
    return result;
}

cv::Mat greyOf(const cv::Mat& picture) {
    cv::Mat grey = picture;
    if (picture.channels() == 3) {
        cv::cvtColor(picture, grey, cv::COLOR_BGR2GRAY);
    }
    grey.convertTo(grey, CV_32F);
    return grey;
}

} // namespace

double colourDifference(const cv::Vec3d& x, const cv::Vec3d& y) {
    const double plainChroma = (std::hypot(x[1], x[2]) + std::hypot(y[1], y[2])) / 2;
    const double stretch = 1 + 0.5 * (1 - seventh(plainChroma));
    const double chromaX = std::hypot(x[1] * stretch, x[2]);
    const double chromaY = std::hypot(y[1] * stretch, y[2]);
    const double hueX = hue(x[1] * stretch, x[2]);
    const double hueY = hue(y[1] * stretch, y[2]);
    const bool grey = chromaX * chromaY == 0;
    const double between = grey ? hueX + hueY : meanHue(hueX, hueY);
    const double step = grey ? 0 : hueStep(hueX, hueY);
    const double lightness = (x[0] + y[0]) / 2 - 50;
    const double chroma = (chromaX + chromaY) / 2;
    const double t = 1 - 0.17 * std::cos(between - 30 * kDegree) + 0.24 * std::cos(2 * between) +
                     0.32 * std::cos(3 * between + 6 * kDegree) -
                     0.20 * std::cos(4 * between - 63 * kDegree);
    const double dl =
        (y[0] - x[0]) / (1 + 0.015 * lightness * lightness / std::sqrt(20 + lightness * lightness));
    const double dc = (chromaY - chromaX) / (1 + 0.045 * chroma);
    const double dh =
        2 * std::sqrt(chromaX * chromaY) * std::sin(step / 2) / (1 + 0.015 * chroma * t);
    const double swing = (between / kDegree - 275) / 25;
    const double turn = -std::sin(60 * kDegree * std::exp(-swing * swing)) * 2 * seventh(chroma);
    return std::sqrt(dl * dl + dc * dc + dh * dh + turn * dc * dh);
}

cv::Vec3d meanColour(const cv::Mat& picture, const cv::Mat& mask) {
    cv::Mat lab;
    picture.convertTo(lab, CV_32FC3, 1 / 255.0);
    cv::cvtColor(lab, lab, cv::COLOR_BGR2Lab);
    const cv::Scalar mean = cv::mean(lab, mask);
    return {mean[0], mean[1], mean[2]};
}

double structuralSimilarity(const cv::Mat& a, const cv::Mat& b) {
    constexpr double kLuminance = 0.01 * 255 * 0.01 * 255;
    constexpr double kContrast = 0.03 * 255 * 0.03 * 255;
    const cv::Mat x = greyOf(a);
    const cv::Mat y = greyOf(b);
    const cv::Mat meanX = blurred(x);
    const cv::Mat meanY = blurred(y);
    const cv::Mat meanXY = meanX.mul(meanY);
    const cv::Mat squares = meanX.mul(meanX) + meanY.mul(meanY);
    const cv::Mat variances = blurred(x.mul(x)) + blurred(y.mul(y)) - squares;
    const cv::Mat covariance = blurred(x.mul(y)) - meanXY;
    const cv::Mat above = (2 * meanXY + kLuminance).mul(2 * covariance + kContrast);
    const cv::Mat below = (squares + kLuminance).mul(variances + kContrast);
    cv::Mat similarity;
    cv::divide(above, below, similarity);
    return cv::mean(similarity)[0];
}

} // namespace doccam::test

#include "code_pictures.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::test {
namespace {

constexpr int kWhite = 255;
constexpr int kDrawnModule = 8; // pixels, before scaling
constexpr double kPaper = 235;
constexpr double kSensorNoise = 2;
constexpr double kGrain = 8;

struct Place {
    cv::Point2d middle;
    double largest; // diagonal that fits, in pixels
};

std::vector<Place> placesFor(std::size_t codes, cv::Size frame) {
    const cv::Point2d middle(frame.width / 2.0, frame.height / 2.0);
    if (codes == 1) {
        return {{middle, frame.height * 0.97}};
    }
    return {{{middle.x, frame.height * 0.37}, frame.height * 0.8},
            {{middle.x, frame.height * 0.85}, frame.width * 0.6}};
}

// Shrinks the modules of codes whose diagonal would not fit.
double scaleFor(const cv::Mat& drawn, double module, double largest) {
    const double diagonal = std::hypot(drawn.cols, drawn.rows);
    return std::min(module / kDrawnModule, largest / diagonal);
}

cv::Mat scaled(const cv::Mat& drawn, double scale) {
    cv::Mat result;
    cv::resize(drawn, result, cv::Size(), scale, scale, cv::INTER_AREA);
    return result;
}

// Clears the code's area of ink, which is the light the page reflects, and draws the code there.
void print(cv::Mat& ink, const cv::Mat& code, cv::Point2d middle, double angle) {
    cv::Mat motion =
        cv::getRotationMatrix2D(cv::Point2d(code.cols / 2.0, code.rows / 2.0), angle, 1);
    motion.at<double>(0, 2) += middle.x - code.cols / 2.0;
    motion.at<double>(1, 2) += middle.y - code.rows / 2.0;
    cv::Mat area;
    cv::warpAffine(cv::Mat(code.size(), CV_8UC1, cv::Scalar(kWhite)), area, motion, ink.size());
    ink.setTo(kWhite, area);
    cv::Mat moved;
    cv::warpAffine(code, moved, motion, ink.size(), cv::INTER_LINEAR, cv::BORDER_CONSTANT,
                   cv::Scalar(kWhite));
    cv::min(ink, moved, ink);
}

void printText(cv::Mat& ink, cv::RNG& random) {
    const double size = ink.rows / 900.0;
    const int step = std::max(ink.rows / 28, 12);
    for (int y = step; y < ink.rows; y += step) {
        std::string line;
        while (line.size() < 90) {
            line.append(static_cast<std::size_t>(random.uniform(2, 9)),
                        static_cast<char>(random.uniform('a', 'z' + 1)));
            line += ' ';
        }
        cv::putText(ink, line, cv::Point(step, y), cv::FONT_HERSHEY_SIMPLEX, size, cv::Scalar(40),
                    std::max(1, ink.rows / 700), cv::LINE_AA);
    }
}

void addNoise(cv::Mat& picture, double deviation, cv::RNG& random) {
    cv::Mat noise(picture.size(), CV_16SC1);
    random.fill(noise, cv::RNG::NORMAL, 0, deviation);
    cv::add(picture, noise, picture, cv::noArray(), CV_8U);
}

// Light falls off from the upper left to the lower right corner.
void shade(cv::Mat& picture, double darkest) {
    const double span = picture.cols + picture.rows - 2;
    for (int y = 0; y < picture.rows; ++y) {
        for (int x = 0; x < picture.cols; ++x) {
            const double light = 1 - (1 - darkest) * (x + y) / span;
            auto& pixel = picture.at<unsigned char>(y, x);
            pixel = cv::saturate_cast<unsigned char>(pixel * light);
        }
    }
}

// Warm light, red first.
cv::Mat coloured(const cv::Mat& grey) {
    cv::Mat result;
    cv::cvtColor(grey, result, cv::COLOR_GRAY2RGB);
    cv::multiply(result, cv::Scalar(1.0, 0.97, 0.9), result);
    return result;
}

} // namespace

cv::Mat photograph(const std::vector<Code>& codes, const View& view) {
    cv::RNG random(static_cast<std::uint64_t>(view.seed));
    cv::Mat picture(view.frame, CV_8UC1, cv::Scalar(kWhite));
    if (view.textured) {
        printText(picture, random);
    }
    double scale = 0;
    const std::vector<Place> places = placesFor(codes.size(), view.frame);
    for (std::size_t i = 0; i < codes.size(); ++i) {
        const cv::Mat drawn = drawCode(codes[i], kDrawnModule);
        const double own = scaleFor(drawn, view.module, places[i].largest);
        scale = i == 0 ? own : scale;
        print(picture, scaled(drawn, own), places[i].middle, view.angle);
    }
    picture.convertTo(picture, CV_8U, kPaper / kWhite, 10);
    if (view.textured) {
        addNoise(picture, kGrain, random);
    }
    shade(picture, view.darkest);
    if (view.blur > 0) {
        cv::GaussianBlur(picture, picture, cv::Size(), view.blur * scale * kDrawnModule);
    }
    addNoise(picture, kSensorNoise, random);
    return coloured(picture);
}

} // namespace doccam::test

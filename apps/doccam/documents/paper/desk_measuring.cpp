#include "documents/paper/desk_measuring.h"

#include "documents/paper/paper_names.h"
#include "host/failure.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>

namespace doccam::host {
namespace {

// The first corner is another one when a sheet lies askew by about 45 degrees.
FrameCorners orderedLike(const FrameCorners& first, FrameCorners corners) {
    FrameCorners best = corners;
    double least = std::numeric_limits<double>::infinity();
    for (int turn = 0; turn < 4; ++turn) {
        double distance = 0;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            distance += cv::norm(corners[i] - first[i]);
        }
        if (distance < least) {
            least = distance;
            best = corners;
        }
        std::rotate(corners.begin(), corners.begin() + 1, corners.end());
    }
    return best;
}

FrameCorners mean(const std::vector<FrameCorners>& sheets) {
    FrameCorners sum{};
    for (const FrameCorners& sheet : sheets) {
        for (std::size_t i = 0; i < sum.size(); ++i) {
            sum[i] += sheet[i] / static_cast<double>(sheets.size());
        }
    }
    return sum;
}

bool hasMoved(const std::vector<FrameCorners>& sheets, const FrameCorners& middle, cv::Size frame) {
    constexpr double kStill = 0.004; // of the frame's width
    const auto isFar = [&](const FrameCorners& sheet) {
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            if (cv::norm(sheet[i] - middle[i]) > kStill * frame.width) {
                return true;
            }
        }
        return false;
    };
    return std::any_of(sheets.begin(), sheets.end(), isFar);
}

bool isCutOff(const FrameCorners& sheet, cv::Size frame) {
    constexpr double kMargin = 1; // pixels of desk that a sheet's side needs to be seen
    return std::any_of(sheet.begin(), sheet.end(), [&](const cv::Point2d& corner) {
        return corner.x < kMargin || corner.y < kMargin || corner.x > frame.width - 1 - kMargin ||
               corner.y > frame.height - 1 - kMargin;
    });
}

std::string oneTo(double proportions) {
    std::ostringstream text;
    text << "1 to " << std::fixed << std::setprecision(2) << std::max(proportions, 1 / proportions);
    return text.str();
}

} // namespace

FrameCorners meanSheet(const std::vector<std::optional<FrameCorners>>& sheets, cv::Size frame) {
    std::vector<FrameCorners> found;
    for (const auto& sheet : sheets) {
        if (sheet) {
            found.push_back(found.empty() ? *sheet : orderedLike(found.front(), *sheet));
        }
    }
    if (2 * found.size() <= sheets.size()) {
        throw Failure(kNothingFound, "No sheet was found; lay one flat on the desk, alone and "
                                     "whole in view, on a ground of another colour.");
    }
    const FrameCorners middle = mean(found);
    if (hasMoved(found, middle, frame)) {
        throw Failure(kNothingFound, "The sheet moved; let it lie still and try again.");
    }
    if (isCutOff(middle, frame)) {
        throw Failure(kNothingFound, "The sheet is cut off at the frame's edge; lay it whole in "
                                     "view, or take a smaller paper.");
    }
    return middle;
}

Millimetres turnedToFit(Millimetres paper, double proportions) {
    constexpr double kTolerance = 1.04;
    const Millimetres turned = turnedLike(proportions, paper);
    const double ratio = proportions * turned.height / turned.width;
    if (std::max(ratio, 1 / ratio) > kTolerance) {
        throw Failure(kNothingFound, "The sheet's sides are " + oneTo(proportions) + ", those of " +
                                         paperText(paper) + " " +
                                         oneTo(paper.width / paper.height) +
                                         "; lay down such a sheet alone, or name its paper.");
    }
    return turned;
}

} // namespace doccam::host

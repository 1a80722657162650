#include "page/same_sheet.h"

#include "page/quadrilateral.h"

#include <algorithm>
#include <cmath>

namespace doccam::page {

const Sheet& sameSheet(const std::vector<Sheet>& sheets, const Sheet& last, cv::Size picture) {
    constexpr double kNear = 0.05; // of the picture's diagonal
    const auto distance = [&](const Sheet& sheet) {
        return distanceBetween(sheet.corners, last.corners);
    };
    const auto nearest =
        std::min_element(sheets.begin(), sheets.end(), [&](const Sheet& one, const Sheet& other) {
            return distance(one) < distance(other);
        });
    return distance(*nearest) < kNear * std::hypot(picture.width, picture.height) ? *nearest
                                                                                  : sheets.front();
}

} // namespace doccam::page

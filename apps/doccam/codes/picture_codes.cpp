#include "codes/picture_codes.h"

#include "host/failure.h"
#include "pages/page_engine.h"
#include "pages/sheets.h"

#include <doccam/codes.h>

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <memory>

namespace doccam::host {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kMaximumSheets = 4;

// Smaller pictures with a code hardly show a sheet with others beside it.
constexpr std::size_t kSmallPicture = 1000000;

// Up to this ratio of opposite sides a reader sees on the sheet itself what it sees on the page.
constexpr double kSlight = 1.06;

struct FreeCodes {
    void operator()(DoccamCodes* codes) const { doccam_codes_free(codes); }
};

Code copyOf(const DoccamCode& code) {
    Code copy{code.symbology,
              {code.text, code.text_size},
              {reinterpret_cast<const char*>(code.bytes), code.bytes_size},
              code.addon};
    for (std::size_t i = 0; i < copy.corners.size(); ++i) {
        copy.corners[i] = {code.corners[i][0], code.corners[i][1]};
    }
    return copy;
}

void failUnlessRead(int result) {
    if (result == DOCCAM_CODES_NO_MEMORY) {
        throw Failure(kUsage, "Reading codes takes too much memory; give a smaller picture.");
    }
    if (result < 0) {
        throw Failure(kUsage, "Codes cannot be read (code " + std::to_string(result) +
                                  "); look whether the picture is sound.");
    }
}

bool isSeenAtAnAngle(const SheetCorners& corners) {
    const auto side = [&](std::size_t i) {
        return std::max(cv::norm(corners.at(i) - corners.at((i + 1) % corners.size())), 1.0);
    };
    const auto ratio = [](double a, double b) { return std::max(a, b) / std::min(a, b); };
    return std::max(ratio(side(0), side(2)), ratio(side(1), side(3))) > kSlight;
}

std::vector<cv::Point2f> inFloats(const std::array<cv::Point2d, 4>& corners) {
    return {corners.begin(), corners.end()};
}

// From the pixels of a page to those of the picture with the sheet.
cv::Mat wayBack(const cv::Size page, const SheetCorners& sheet) {
    const auto right = static_cast<float>(page.width) - 0.5F;
    const auto bottom = static_cast<float>(page.height) - 0.5F;
    const std::vector<cv::Point2f> corners{
        {-0.5F, -0.5F}, {right, -0.5F}, {right, bottom}, {-0.5F, bottom}};
    return cv::getPerspectiveTransform(corners, inFloats(sheet));
}

cv::Point2f centreOf(const std::vector<cv::Point2f>& place) {
    return (place[0] + place[1] + place[2] + place[3]) / 4;
}

// Whether the codes are one, seen twice. Lines across bars may have been read elsewhere on them.
bool isSame(const Code& one, const Code& other) {
    const std::vector<cv::Point2f> place = inFloats(one.corners);
    const std::vector<cv::Point2f> otherPlace = inFloats(other.corners);
    const bool saysTheSame = one.symbology == other.symbology && one.bytes == other.bytes;
    return cv::pointPolygonTest(place, centreOf(otherPlace), false) >= 0 ||
           cv::pointPolygonTest(otherPlace, centreOf(place), false) >= 0 ||
           (saysTheSame &&
            cv::norm(centreOf(place) - centreOf(otherPlace)) < cv::norm(place[2] - place[0]) / 2);
}

bool isKnown(const Code& code, const std::vector<Code>& known) {
    return std::any_of(known.begin(), known.end(),
                       [&](const Code& one) { return isSame(one, code); });
}

CodesFound codesOn(const cv::Mat& grey, const SheetCorners& corners, unsigned symbologies,
                   double seconds) {
    const DoccamImage image = imageOf(grey);
    const DoccamSheet sheet = sheetAt(corners);
    DoccamPage* made = nullptr;
    const int result = doccam_rectify(&image, &sheet, &made);
    if (result == DOCCAM_PAGE_BAD_SHEET) {
        return {};
    }
    failUnlessDone(result);
    const Page page(made);
    const cv::Mat view(page->height, page->width, CV_8UC1, page->data, page->stride);
    CodesFound found = codesIn(view, symbologies, seconds);
    const cv::Mat back = wayBack(view.size(), corners);
    for (Code& code : found.codes) {
        std::vector<cv::Point2d> points(code.corners.begin(), code.corners.end());
        cv::perspectiveTransform(points, points, back);
        std::copy(points.begin(), points.end(), code.corners.begin());
    }
    return found;
}

} // namespace

CodesFound codesIn(const cv::Mat& grey, unsigned symbologies, double seconds) {
    const DoccamImage image = imageOf(grey);
    DoccamCodes* read = nullptr;
    failUnlessRead(doccam_read_codes(&image, symbologies, seconds, &read));
    const std::unique_ptr<DoccamCodes, FreeCodes> codes(read);
    CodesFound found;
    found.complete = codes->complete != 0;
    std::transform(codes->codes, codes->codes + codes->count, std::back_inserter(found.codes),
                   copyOf);
    return found;
}

CodesFound codesOnSheets(const cv::Mat& grey, const std::vector<Code>& known, unsigned symbologies,
                         double seconds) {
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    CodesFound found;
    if (!known.empty() && grey.total() < kSmallPicture) {
        return found;
    }
    std::vector<Code> all = known;
    for (const FoundSheet& sheet : findSheets(grey, kMaximumSheets)) {
        if (!known.empty() && !isSeenAtAnAngle(sheet.corners)) {
            continue;
        }
        const std::chrono::duration<double> left = end - Clock::now();
        if (left.count() <= 0) {
            found.complete = false;
            break;
        }
        const CodesFound more = codesOn(grey, sheet.corners, symbologies, left.count());
        found.complete = found.complete && more.complete;
        for (const Code& code : more.codes) {
            if (!isKnown(code, all)) {
                all.push_back(code);
                found.codes.push_back(code);
            }
        }
    }
    return found;
}

} // namespace doccam::host

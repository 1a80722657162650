#include "literal_cleaning.h"

#include <opencv2/core/core_c.h>
#include <opencv2/imgproc.hpp>
#include <opencv2/imgproc/imgproc_c.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace doccam::test::literal {
namespace {

using IsMarked = std::function<bool(int x, int y)>;
using Paint = std::function<void(int x, int y)>;

IplImage* newPlane(CvSize size) {
    IplImage* plane = cvCreateImage(size, IPL_DEPTH_8U, 1);
    std::memset(plane->imageData, 0, static_cast<std::size_t>(plane->imageSize));
    return plane;
}

uchar* bytesOf(IplImage* image) {
    return reinterpret_cast<uchar*>(image->imageData);
}

int byteAtWidth(IplImage* plane, int x, int y) {
    return bytesOf(plane)[y * plane->width + x];
}

int sampleAt(const cv::Mat& picture, int x, int y, int channel) {
    return picture.data[static_cast<std::size_t>(y) * picture.step[0] +
                        static_cast<std::size_t>(3 * x + channel)];
}

void setPixel(cv::Mat& picture, int x, int y, int c0, int c1, int c2) {
    uchar* pixel = picture.data + static_cast<std::size_t>(y) * picture.step[0] + 3 * x;
    pixel[0] = static_cast<uchar>(c0);
    pixel[1] = static_cast<uchar>(c1);
    pixel[2] = static_cast<uchar>(c2);
}

int meanAt(const cv::Mat& picture, int x, int y) {
    return (sampleAt(picture, x, y, 0) + sampleAt(picture, x, y, 1) + sampleAt(picture, x, y, 2)) /
           3;
}

int deviationAt(const cv::Mat& picture, int x, int y, int channel) {
    return std::abs(meanAt(picture, x, y) - sampleAt(picture, x, y, channel));
}

bool isGreyish(const cv::Mat& picture, int x, int y) {
    return deviationAt(picture, x, y, 0) <= 30 && deviationAt(picture, x, y, 1) <= 30 &&
           deviationAt(picture, x, y, 2) <= 30;
}

bool isColoured(const cv::Mat& picture, int x, int y) {
    return deviationAt(picture, x, y, 0) >= 31 || deviationAt(picture, x, y, 1) >= 31 ||
           deviationAt(picture, x, y, 2) >= 31;
}

cv::Mat lifted(const cv::Mat& picture) {
    uchar table[256];
    for (int i = 0; i < 256; ++i) {
        const float power = powf(static_cast<float>(i / 255.0), 0.4F);
        table[i] = cv::saturate_cast<uchar>(power * 255.0F);
    }
    cv::Mat result = picture.clone();
    for (int y = 0; y < result.rows; ++y) {
        for (int x = 0; x < result.cols; ++x) {
            setPixel(result, x, y, table[sampleAt(picture, x, y, 0)],
                     table[sampleAt(picture, x, y, 1)], table[sampleAt(picture, x, y, 2)]);
        }
    }
    return result;
}

// The search works in place and leaves small values behind, between which the outlines are drawn.
IplImage* outlineOf(const cv::Mat& picture) {
    IplImage header = cvIplImage(picture);
    IplImage* binary = newPlane(cvGetSize(&header));
    cvCvtColor(&header, binary, CV_RGB2GRAY);
    cvThreshold(binary, binary, 0, 255, CV_THRESH_BINARY | CV_THRESH_OTSU);

    CvMemStorage* storage = cvCreateMemStorage(0);
    CvSeq* contour = nullptr;
    cvFindContours(binary, storage, &contour, sizeof(CvContour), CV_RETR_EXTERNAL,
                   CV_CHAIN_APPROX_NONE, cvPoint(0, 0));
    for (; contour != nullptr; contour = contour->h_next) {
        const int area = static_cast<int>(std::fabs(cvContourArea(contour, CV_WHOLE_SEQ, 0)));
        if (area > 30000) {
            cvDrawContours(binary, contour, cvScalar(255, 0, 0, 0), cvScalar(255, 0, 0, 0), 2, 2, 8,
                           cvPoint(0, 0));
        }
    }
    cvReleaseMemStorage(&storage);
    return binary;
}

// A start before position 0 stands for a line that is painted whole.
void scanForward(int length, const std::function<bool(int)>& isMarked,
                 const std::function<void(int)>& paint) {
    bool found = false;
    int run = 0;
    int prev = 0;
    int start = 0;
    for (int p = 0; p < length && !found; ++p) {
        if (isMarked(p)) {
            if (std::abs(p - prev) != 1) {
                run = 0;
                start = p;
            } else {
                run = run + 1;
            }
            prev = p;
            if (run > 1) {
                start = start + 3;
                found = true;
            }
        }
    }
    for (int p = 0; p < (found ? start : length); ++p) {
        paint(p);
    }
}

void scanBackward(int length, const std::function<bool(int)>& isMarked,
                  const std::function<void(int)>& paint) {
    bool found = false;
    int run = 0;
    int prev = 0;
    int start = 0;
    for (int p = length - 1; p >= 0 && !found; --p) {
        if (isMarked(p)) {
            if (std::abs(p - prev) != 1) {
                run = 0;
                start = p;
            } else {
                run = run + 1;
            }
            prev = p;
            if (run > 1) {
                start = start - 3;
                found = true;
            }
        }
    }
    const int end = found ? std::max(start, -1) : -1;
    for (int p = length - 1; p > end; --p) {
        paint(p);
    }
}

void scanAll(int width, int height, const IsMarked& isMarked, const Paint& paint) {
    for (int y = 0; y < height; ++y) {
        const auto marked = [&](int x) { return isMarked(x, y); };
        const auto painted = [&](int x) { paint(x, y); };
        scanForward(width, marked, painted);
        scanBackward(width, marked, painted);
    }
    for (int x = 0; x < width; ++x) {
        const auto marked = [&](int y) { return isMarked(x, y); };
        const auto painted = [&](int y) { paint(x, y); };
        scanForward(height, marked, painted);
        scanBackward(height, marked, painted);
    }
}

void paintAround(IplImage* binary, cv::Mat& page) {
    scanAll(
        page.cols, page.rows, [&](int x, int y) { return byteAtWidth(binary, x, y) == 255; },
        [&](int x, int y) { setPixel(page, x, y, 255, 255, 255); });
}

} // namespace

void deleteBlackEdge(cv::Mat& page) {
    cv::Mat copy = page.clone();
    for (int y = 0; y < copy.rows; ++y) {
        for (int x = 0; x < copy.cols; ++x) {
            if (meanAt(copy, x, y) > 30) {
                setPixel(copy, x, y, 128, 128, 128);
            }
        }
    }
    IplImage* binary = outlineOf(lifted(copy));
    paintAround(binary, page);
    cvReleaseImage(&binary);
}

void deleteBlackEdgeByBrightness(cv::Mat& page) {
    IplImage* binary = outlineOf(page);
    paintAround(binary, page);
    cvReleaseImage(&binary);
}

cv::Mat blackEdgeMask(const cv::Mat& page) {
    IplImage* binary = outlineOf(lifted(page));
    cv::Mat mask(page.size(), CV_8UC1, cv::Scalar(0));
    scanAll(
        page.cols, page.rows,
        [&](int x, int y) { return byteAtWidth(binary, x, y) == 255 || isColoured(page, x, y); },
        [&](int x, int y) { mask.at<uchar>(y, x) = 255; });
    cvReleaseImage(&binary);
    return mask;
}

void deleteBackcolor(cv::Mat& page) {
    IplImage header = cvIplImage(page);
    IplImage* paper = newPlane(cvGetSize(&header));
    cvCvtColor(&header, paper, CV_RGB2GRAY);
    cvAdaptiveThreshold(paper, paper, 255, CV_ADAPTIVE_THRESH_MEAN_C, CV_THRESH_BINARY, 179, 19);

    IplImage* mask = newPlane(cvGetSize(&header));
    blackEdgeMask(page).copyTo(cv::cvarrToMat(mask));

    const float weights[9] = {0.0F, -2.0F, 0.0F, 0.0F, 5.0F, 0.0F, 0.0F, -1.5F, 0.0F};
    cv::Mat filtered(page.size(), CV_8UC3);
    cv::filter2D(page, filtered, 16, cv::Mat(3, 3, CV_32FC1, const_cast<float*>(weights)),
                 cv::Point(-1, -1), 0, 4);

    for (int y = 0; y < page.rows; ++y) {
        for (int x = 0; x < page.cols; ++x) {
            const int c0 = sampleAt(filtered, x, y, 0);
            const int c1 = sampleAt(filtered, x, y, 1);
            const int c2 = sampleAt(filtered, x, y, 2);
            const bool greyish = isGreyish(filtered, x, y);
            if (byteAtWidth(paper, x, y) > 254 && greyish) {
                setPixel(page, x, y, 255, 255, 255);
            }
            if (!greyish) {
                if (c2 - c1 >= 81 || c2 - c0 >= 81) {
                    setPixel(page, x, y, std::max(c0 - 40, 0), std::max(c1 - 40, 0),
                             std::min(c2 + 80, 255));
                } else {
                    setPixel(page, x, y, c0, c1, c2);
                }
            }
            if (byteAtWidth(mask, x, y) > 254) {
                setPixel(page, x, y, 255, 255, 255);
            }
        }
    }
    cvReleaseImage(&mask);
    cvReleaseImage(&paper);
}

} // namespace doccam::test::literal

// Turning pictures, finding the sheet, cleaning.
#include "docimage/clean/background.h"
#include "docimage/clean/black_edge.h"
#include "docimage/clean/legacy_image.h"
#include "docimage/pixels/gamma.h"
#include "docimage/sheet/edge_overlay.h"
#include "docimage/turn/quarter_turn.h"
#include "docimage/turn/turned_picture.h"
#include "output/files/clean_file.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

using doccam::state;

void CamdataRote90(cv::Mat src) {
    doccam::turnIntoFrame(src, doccam::Quarter::kClockwise, state().session.frames->roimage);
}

cv::Mat CamdataRote180(cv::Mat src) {
    doccam::turnByHalf(src);
    return src;
}

void CamdataRote270(cv::Mat src) {
    doccam::turnIntoFrame(src, doccam::Quarter::kCounterClockwise, state().session.frames->roimage);
}

cv::Mat rotateImage(cv::Mat src, float angle) {
    return doccam::rotated(src, angle);
}

int DrawingEdge(unsigned char* data, int width, int height, int drawFlag) {
    const bool possible = data != nullptr && width > 0 && height > 0;
    const cv::Mat frameView = possible ? cv::Mat(height, width, CV_8UC3, data) : cv::Mat();
    return static_cast<int>(doccam::outlineSheet(frameView, drawFlag == 1, state().sheet));
}

float GetAngle(int* points) {
    return points != nullptr ? doccam::storeGeometry(doccam::cornersFrom(points), state().sheet)
                             : 0;
}

void GammaCorrection(cv::Mat& src, cv::Mat& dst, float fGamma) {
    dst = doccam::gammaCorrected(src, fGamma);
}

void FN_DeleteBlackEdge(cv::Mat src) {
    doccam::whitenMargins(src);
}

void FN_DeleteBlackEdgeEx(char* path) {
    doccam::whitenMarginsOfFile(path);
}

void FN_DeleteBlackEdgeEx2(char* path) {
    doccam::whitenMarginsOfFileByBrightness(path);
}

IplImage* FillBlackEdgeToWhite(IplImage* src) {
    return doccam::newMarginMask(src);
}

void FN_DeleteBackcolor(cv::Mat src) {
    doccam::whitenBackground(src);
}

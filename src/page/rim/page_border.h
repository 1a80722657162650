// A page's borders, and how far inward its paper begins.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// An evened page and the colour of its paper.
struct PaperPage {
    cv::Mat pixels;
    cv::Scalar ground;

    bool isPaper(cv::Point pixel) const;
    void fill(cv::Point pixel);
};

// A view of the page on which every border is the left one.
struct Border {
    bool level; // the top or the bottom border
    bool far;   // the right or the bottom one
    int length; // along it
    int across; // the page's side across it

    cv::Point at(int along, int depth) const {
        const int inward = far ? across - 1 - depth : depth;
        return level ? cv::Point(along, inward) : cv::Point(inward, along);
    }
};

Border borderOf(const cv::Mat& page, bool level, bool far);

// How many pixels inward the first paper lies, or deepest.
int depthAt(const PaperPage& page, const Border& border, int along, int deepest);

// Fills so many pixels with paper, and those that the sheet's edge darkens.
void fillInward(PaperPage& page, const Border& border, int along, double depth);

} // namespace doccam::page

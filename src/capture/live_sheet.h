// Following the sheet from frame to frame with the page engine.
#pragma once

#include "page/sheet.h"
#include "state/parts.h"

#include <opencv2/core/mat.hpp>

#include <optional>

namespace doccam {

// For one streaming thread. A full search takes as long as several frames, so most frames only look
// where the sheet was.
class LiveSheet {
  public:
    // Looks for the sheet in the red-first frame, which has been turned by that many quarters. If
    // there is one, keeps its rounded corners and draws its outline into the frame.
    void outline(cv::Mat frame, int turns, record::Sheet& kept);

    // The sheet outlined last, if it is of frames of that size and turn; else null.
    const page::Sheet* outlined(cv::Size frame, int turns) const;

    void forget();

  private:
    bool follow(const cv::Mat& frame);
    void search(const cv::Mat& frame);

    cv::Size frame_;
    int turns_ = 0;
    std::optional<page::Sheet> sheet_; // also one that is out of sight
    bool isInSight_ = false;
    bool isDoubtful_ = false; // the last search did not confirm it
    int framesSinceSearch_ = 0;
};

} // namespace doccam

// Detecting when a new sheet has come to rest under the camera.
#pragma once

#include "pages/sheets.h"
#include "scan/sheet_view.h"
#include "scan/stillness.h"
#include "scan/watched_frames.h"

#include <opencv2/core/mat.hpp>

#include <optional>

namespace doccam::host {

// What a frame shows for the first time.
enum class Sight {
    kNothing,
    kNewSheet,   // a sheet at rest, other than the last one taken
    kNoSheet,    // a picture at rest without a sheet, but of more than an empty desk
    kDark,       // too little light, at rest or not
    kMoving,     // for long, something has been moving all the time;
    kFlickering, // or the light has been changing
};

// Call with the frames in order, all of the same size.
class SheetWatch {
  public:
    // With wholeFrame a picture without a sheet is a new sheet, too, unless it is an empty desk.
    explicit SheetWatch(bool wholeFrame)
      : wholeFrame_(wholeFrame) {}

    // Processes the next frame.
    Sight see(const WatchedFrame& frame);

    // Whether the frame still shows what has been judged last.
    bool rests() const { return judged_; }

    // After kNewSheet: the sharpest frame of its rest, blue first, and the sheet in it.
    const cv::Mat& picture() const { return picture_; }

    const std::optional<FoundSheet>& sheet() const { return sheet_; }

    // The same frame as the camera sent it, or if it did so damaged or as no JPEG, as a PNG. Throws
    // Failure if there is not enough memory.
    FrameFile file() const;

    // The frame's sheet has become a page earlier: it is no new one. Blue first; cropped if the
    // frame shows that sheet alone.
    void know(const cv::Mat& frame, bool cropped);

    // The sheet seen last has become a page. Without this it is seen again at its next rest.
    void noteTaken() { taken_ = seen_; }

  private:
    bool comesToRest(const WatchedFrame& frame, int calm);
    void keepSharpest(const WatchedFrame& frame);
    Sight judge();
    Sight complaint();

    const bool wholeFrame_;
    Stillness stillness_;
    cv::Mat grey_;
    WatchedFrame sharpest_; // of the frames at rest
    double sharpness_ = 0;
    bool judged_ = false; // this rest
    int restless_ = 0;    // frames since the last rest
    int patience_ = 0;    // restless frames until the next complaint
    cv::Mat picture_;
    std::optional<FoundSheet> sheet_;
    SheetView seen_;
    std::optional<SheetView> taken_;
};

} // namespace doccam::host

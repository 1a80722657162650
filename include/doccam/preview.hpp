// The live preview: which part of each frame is shown, and where.
#pragma once

#include "doccam.h"

#include <opencv2/core/mat.hpp>

// The host declares its display area, the form; the preview callback receives the visible part of
// each frame, scaled, and its position in the form. Call these from one thread at a time, host or
// callback; they take effect with the next frame. A frame that the view does not fit is not shown.

// Declares a form of width x height pixels and fits the whole frame into it, centred and at most at
// true size. The first form of a session sizes the preview buffer: declare the form again after
// each openCamera, and reopen the camera for a larger buffer, as larger pictures are skipped. With
// a side below 4 nothing is shown; a form of more than 2^31 bytes gets no buffer.
DOCCAM_API void SetWebFormSize(int width, int height);

// Returns to the best fit, at the scale that fits a form of formWidth x formHeight pixels.
DOCCAM_API void FuncSuitableSize(int formWidth, int formHeight);

// Recomputes the size of the whole frame in form pixels from the scale.
DOCCAM_API void FuncCalculateShowWH();

// Does nothing.
DOCCAM_API void FuncDisplayCenter(int width, int height);

// Drags the picture right and down by (dx, dy) form pixels: a smaller picture within the form,
// otherwise the visible part over the frame, up to its edges. A drag far past the left or upper
// edge of a larger frame jumps to the opposite end. Returns 0; or -1, changing nothing, while no
// camera streams.
DOCCAM_API int Web_SetMoveOffet(int dx, int dy);

// Zoom around the centre: 4 percentage points larger, up to 600 %; 4 smaller, down to the best fit;
// to 100 %; to the best fit. Return 0; or -1, changing nothing, while no camera streams.
DOCCAM_API int Web_ZoomIn();
DOCCAM_API int Web_ZoomOut();
DOCCAM_API int Web_TrueSize();
DOCCAM_API int Web_BestSize();

// Turn the live picture a quarter counter-clockwise or clockwise and go back to the best fit. The
// next two frames are dropped. Return 0; or -1, changing nothing, while no camera streams.
DOCCAM_API int Web_RotateL();
DOCCAM_API int Web_RotateR();

// Renders the visible part of frame into out, at the size passed to the preview callback, rows back
// to back; bytes past the picture are not touched. frame must have three 8-bit channels, and out
// room for the picture without overlapping frame. Throws cv::Exception, writing nothing, if the
// view does not lie inside frame.
DOCCAM_API void VideoZoomToWeb(cv::Mat frame, unsigned char* out);

// The same into out at out's own size. out must be of frame's type for the caller to see the
// result.
DOCCAM_API void VideoZoomToWebEx(cv::Mat frame, cv::Mat out);

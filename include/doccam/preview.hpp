// The live preview: which part of each frame a host shows, and where.
#pragma once

#include "doccam.h"

#include <opencv2/core/mat.hpp>

// The host declares its display area, the form; the preview callback receives the visible part of
// each frame, scaled, and where in the form to draw it. Call these from one thread at a time, host
// or callback; the next frame follows. A frame that the view does not fit is not shown.

// Declares a form of width x height pixels and fits the whole frame into it, in its middle and at
// most at true size. The first form of a session sizes the preview buffer: declare the form anew
// after each openCamera, and reopen the camera for a larger buffer, as pictures beyond it are left
// out. A side below 4 shows nothing; a form of more than 2^31 bytes provides no buffer.
DOCCAM_API void SetWebFormSize(int width, int height);

// Returns to the best fit, at the scale that suits a form of formWidth x formHeight pixels.
DOCCAM_API void FuncSuitableSize(int formWidth, int formHeight);

// Recomputes the size of the whole frame in form pixels from the scale.
DOCCAM_API void FuncCalculateShowWH();

// Does nothing.
DOCCAM_API void FuncDisplayCenter(int width, int height);

// Drags the picture by (dx, dy) form pixels, right and down: within the form when it is smaller,
// else the visible part over the frame, as far as its edges. A drag far beyond the left or upper
// edge of a larger frame jumps to the opposite end. 0; -1, and nothing changed, when no camera
// streams.
DOCCAM_API int Web_SetMoveOffet(int dx, int dy);

// Zoom around the middle: 4 percentage points larger, up to 600 %; 4 smaller, down to the best fit;
// to 100 %; to the best fit. 0; -1, and nothing changed, when no camera streams.
DOCCAM_API int Web_ZoomIn();
DOCCAM_API int Web_ZoomOut();
DOCCAM_API int Web_TrueSize();
DOCCAM_API int Web_BestSize();

// Turn the live picture a quarter counter-clockwise or clockwise and return to the best fit. The
// next two frames are dropped. 0; -1, and nothing changed, when no camera streams.
DOCCAM_API int Web_RotateL();
DOCCAM_API int Web_RotateR();

// Renders what the view shows of frame into out, at the size that the preview callback is told,
// rows back to back, bytes beyond untouched. frame has three 8-bit channels, and out room for the
// picture, outside frame's own pixels. Throws cv::Exception, and writes nothing, when the view does
// not lie inside frame.
DOCCAM_API void VideoZoomToWeb(cv::Mat frame, unsigned char* out);

// The same into out at out's own size. The caller sees the result if out is of frame's type.
DOCCAM_API void VideoZoomToWebEx(cv::Mat frame, cv::Mat out);

// From a frame to a page: rotation, the sheet's outline, cleaning, stills and files.
//
// Images are 8-bit with three channels unless documented otherwise. Live frames are red first,
// images read from or written to files blue first. An image passed by value shares its pixels.
#pragma once

#include "doccam.h"

#include <opencv2/core/mat.hpp>

// --- Rotation ------------------------------------------------------------------------------------

// Turns src a quarter clockwise (90) or counter-clockwise (270) into the session's turned frame;
// does nothing until a camera has been open.
DOCCAM_API void CamdataRote90(cv::Mat src);
DOCCAM_API void CamdataRote270(cv::Mat src);

// Turns src by half a turn in place and returns it.
DOCCAM_API cv::Mat CamdataRote180(cv::Mat src);

// Returns src turned clockwise, as displayed, by angle degrees about its centre, on a canvas that
// holds all of it, with black corners. Throws cv::Exception for an empty src, an angle that is not
// finite, or sides of 32767 pixels or more. Any thread.
DOCCAM_API cv::Mat rotateImage(cv::Mat src, float angle);

// --- The sheet's outline -------------------------------------------------------------------------

// Finds the sheet in the red-first frame of width x height pixels, without row padding, and keeps
// its four corners for the next still. drawFlag 1 draws its outline into the frame in green.
// Returns 0 if found; -1 if the frame has no outline, is null, or is under four pixels wide or
// high; -2 if no outline is large enough. The kept corners change only on 0. Streaming thread.
DOCCAM_API int DrawingEdge(unsigned char* data, int width, int height, int drawFlag);

// Measures the sheet with corners points, x0, y0 ... x3, y3, and keeps its bounding box and page
// size for the current still. Returns the clockwise rotation in degrees that straightens it: about
// 0 to 45, or 315 and more; for null returns 0 and keeps nothing. Streaming thread.
DOCCAM_API float GetAngle(int* points);

// --- Stills and files ----------------------------------------------------------------------------

// Turns the frame img into a document image according to the settings and saves it at path.
// cropMode 1 crops to the sheet that DrawingEdge found last and straightens it. format is unused.
// Does not change img's pixels. Returns 0. Throws cv::Exception if the sheet's corners give no
// region of the frame or path's extension is unknown, std::out_of_range for a path of less than
// three bytes. Streaming thread.
DOCCAM_API int capture(char* path, int format, int cropMode, cv::Mat img);

// Saves the blue-first image img at path in the set colour mode. Returns 0 whether or not a file
// was written. Throws std::out_of_range for a path of less than three bytes.
DOCCAM_API int SaveImage(char* path, cv::Mat img);

// Saves img as a one-page PDF at path, through a JPEG of the same base name that remains in the
// user's home directory. Returns 0. Throws cv::Exception if path has no extension.
DOCCAM_API int TempImgToPdf(char* path, cv::Mat img);

// libharu's error callback: prints the two codes and marks the document as failed.
DOCCAM_API void error_handler(unsigned long error_no, unsigned long detail_no, void* user_data);

// --- Cleaning ------------------------------------------------------------------------------------

struct _IplImage; // NOLINT(bugprone-reserved-identifier): OpenCV's C image
using IplImage = _IplImage;

// Makes dst a copy of src with every sample s, taken as 0 to 1, raised to the power fGamma. Images
// with neither one nor three channels are copied unchanged. src and dst may be the same image.
DOCCAM_API void GammaCorrection(cv::Mat& src, cv::Mat& dst, float fGamma);

// The cleaning operations take images of three channels and throw cv::Exception for others and for
// empty ones.
//
// Paints the dark margins around the sheet white in place, including the outline's three pixels,
// two of which are on the sheet. A picture without a large bright region becomes all white.
DOCCAM_API void FN_DeleteBlackEdge(cv::Mat src);

// The same for the image file at path, which is replaced; its extension selects the type. Applies
// the file's orientation tag. Throws cv::Exception for a file that is not a picture or an unknown
// extension; a file that cannot be written is silently left unchanged.
DOCCAM_API void FN_DeleteBlackEdgeEx(char* path);

// The same, but ignores the orientation tag and takes only bright regions for sheet: dim parts of
// the sheet may count as margin.
DOCCAM_API void FN_DeleteBlackEdgeEx2(char* path);

// Returns a new one-channel image of src's size, 255 in the dark margins and 0 elsewhere; like the
// sheet, coloured pixels end a margin. Does not change src. Free it with cvReleaseImage.
DOCCAM_API IplImage* FillBlackEdgeToWhite(IplImage* src);

// Whitens the paper and the dark margins of the blue-first page src in place. Coloured marks become
// sharper, red ones redder; grey print stays.
DOCCAM_API void FN_DeleteBackcolor(cv::Mat src);

// From a frame to a page: rotation, the sheet's outline, cleaning, stills and files.
//
// Images are 8-bit with three channels unless said otherwise. Live frames are red first, images
// read from or written to files blue first. An image passed by value shares its pixels.
#pragma once

#include "doccam.h"

#include <opencv2/core/mat.hpp>

// --- Rotation ------------------------------------------------------------------------------------

// Turns src a quarter clockwise (90) or counter-clockwise (270) into the session's turned frame;
// does nothing while no camera has been open.
DOCCAM_API void CamdataRote90(cv::Mat src);
DOCCAM_API void CamdataRote270(cv::Mat src);

// Turns src by half a turn in place and returns it.
DOCCAM_API cv::Mat CamdataRote180(cv::Mat src);

// Returns src turned clockwise, as displayed, by angle degrees about its middle, on a canvas that
// holds all of it, with black corners. Throws cv::Exception for an empty src, an angle that is no
// number, or sides of 32767 pixels and more. Any thread.
DOCCAM_API cv::Mat rotateImage(cv::Mat src, float angle);

// --- The sheet's outline -------------------------------------------------------------------------

// Finds the sheet in the red-first frame of width x height pixels, rows without padding, and keeps
// its four corners for the next still. drawFlag 1 draws its outline into the frame in green. 0
// found; -1 the frame has no outline, or is null or under four pixels wide or high; -2 no outline
// is large enough. The corners stay as they were unless 0 is returned. Streaming thread.
DOCCAM_API int DrawingEdge(unsigned char* data, int width, int height, int drawFlag);

// Measures the sheet whose corners are points, x0, y0 ... x3, y3, and keeps its bounding box and
// page size for the still in work. Returns by how many degrees clockwise it must be turned to lie
// straight: about 0 to 45, or 315 and more; 0, and nothing kept, for null. Streaming thread.
DOCCAM_API float GetAngle(int* points);

// --- Stills and files ----------------------------------------------------------------------------

// Turns the frame img into a document image as the settings say and saves it at path. cropMode 1
// crops to the sheet that DrawingEdge found last, and straightens it. format is not used. Leaves
// img's pixels alone. Returns 0. Throws cv::Exception when the sheet's corners give no region of
// the frame or path's extension names no type, std::out_of_range for a path of less than three
// bytes. Streaming thread.
DOCCAM_API int capture(char* path, int format, int cropMode, cv::Mat img);

// Saves the blue-first image img at path in the set colour mode. Returns 0 whether or not a file
// was written. Throws std::out_of_range for a path under three characters.
DOCCAM_API int SaveImage(char* path, cv::Mat img);

// Saves img as a one-page PDF at path by way of a JPEG of the same base name in the user's home
// directory, which stays there. Returns 0. Throws cv::Exception when path names no file type.
DOCCAM_API int TempImgToPdf(char* path, cv::Mat img);

// libharu's error callback: prints the two codes and marks the document as spoilt.
DOCCAM_API void error_handler(unsigned long error_no, unsigned long detail_no, void* user_data);

// --- Cleaning ------------------------------------------------------------------------------------

struct _IplImage; // NOLINT(bugprone-reserved-identifier): OpenCV's C image
using IplImage = _IplImage;

// Makes dst a copy of src with every sample s, taken as 0 to 1, raised to the power fGamma. Images
// with neither one nor three channels are copied unchanged. src and dst may be the same image.
DOCCAM_API void GammaCorrection(cv::Mat& src, cv::Mat& dst, float fGamma);

// The cleaning operations take images of three channels and throw cv::Exception for any other and
// for an empty one.
//
// The first paints the dark margins around the sheet white, and the outline's three pixels, two of
// them on the sheet, in src's own pixels. A picture without a large bright region becomes all
// white.
DOCCAM_API void FN_DeleteBlackEdge(cv::Mat src);

// The same for the image file at path, which is replaced; its type follows its extension. Turns the
// picture as the file's orientation tag says. Throws cv::Exception for a file that is no picture or
// an extension that names no type; a file that cannot be written silently stays as it is.
DOCCAM_API void FN_DeleteBlackEdgeEx(char* path);

// The same, but takes the picture as it is stored, whatever its orientation tag, and only what is
// bright for sheet: dim parts of the sheet may count as margin.
DOCCAM_API void FN_DeleteBlackEdgeEx2(char* path);

// A new one-channel image of src's size, 255 in the dark margins and 0 elsewhere; coloured pixels
// end a margin as the sheet does. Leaves src alone. The caller frees it with cvReleaseImage.
DOCCAM_API IplImage* FillBlackEdgeToWhite(IplImage* src);

// Makes the paper of the blue-first page src white, its dark margins too, in src's own pixels.
// Coloured marks become sharper, red ones redder; grey print stays.
DOCCAM_API void FN_DeleteBackcolor(cv::Mat src);

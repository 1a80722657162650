// doccam's operations with C++ linkage: the building blocks behind the C interface, for hosts that
// hold cv::Mat images. Names and signatures are fixed; existing hosts link against them.
//
// Images are 8-bit with three channels unless said otherwise. Live frames are red first, images
// read from or written to files blue first. An image passed by value shares its pixels.
#pragma once

#include "doccam.h"

#include <opencv2/core/mat.hpp>

#include <cstdint>
#include <string>
#include <vector>

struct jpeg_common_struct;
struct jpeg_decompress_struct;

// --- Settings and helpers ---------------------------------------------------------------------

// Registers the callback for preview pictures; as SetDataCallback. Any thread. Always 0.
DOCCAM_API int SetWebDataCallback(WebFrameCallback callback);

// Sets the grab size in pixels and with it the byte size of a frame, width x height x 3.
DOCCAM_API void setGrabSize(int width, int height);

// Waits ms milliseconds, 0 to 999. A signal may end the wait early.
DOCCAM_API void Sleep(int ms);

// Splits text at each occurrence of pattern. Empty pieces are kept: "a:" gives "a" and "". An empty
// pattern gives the whole text as one piece.
DOCCAM_API std::vector<std::string> split(std::string text, std::string pattern);

// --- Streaming --------------------------------------------------------------------------------

// Takes one frame of the open camera into buffer, which holds width x height x 3 bytes of the grab
// size, and stores the number of bytes copied in *length. Blocks until the driver has a frame.
// 0 done; -1 the driver failed; -100 the driver named a buffer that does not exist.
DOCCAM_API int grabImage(unsigned char* buffer, int* length);

// The streaming thread's entry: runs the frame loop until the session ends. arg is not used.
DOCCAM_API void* VideoStreamPro(void* arg);

// --- MJPEG through the codec library ----------------------------------------------------------

// Creates the process-wide MJPEG decoder; does nothing if it exists. Host thread, not streaming.
DOCCAM_API void av_decode_init();

// Releases the decoder; does nothing without one. Not while a frame is being decoded.
DOCCAM_API void av_decode_deinit();

// Decodes one JPEG of length bytes into out, which is allocated as width x height and continuous;
// a picture of another size is scaled. Red first. On failure out keeps its content. spare is not
// used.
DOCCAM_API void do_excute_image(unsigned char* data, int length, int width, int height,
                                cv::Mat& out, cv::Mat& spare);

// --- JPEG from memory -------------------------------------------------------------------------

// One frame of the host: where it starts, and its size in bytes.
struct VideoBuf {
    unsigned char* start;
    std::int32_t length;
};

// Decodes the colour JPEG into out, which is allocated, continuous and at least as large. Red
// first. 0 done, also for truncated data; -1 on failure, with one line on standard output.
DOCCAM_API int Mjpeg2RgbConvert(VideoBuf* frame, cv::Mat& out);
DOCCAM_API int Mjpeg2RgbConvertEx(unsigned char* data, int length, cv::Mat& out);

// A libjpeg source over size bytes of memory, and its callbacks.
DOCCAM_API void jpeg_mem_src_tj(jpeg_decompress_struct* cinfo, unsigned char* buffer,
                                unsigned long size);
DOCCAM_API void init_mem_source(jpeg_decompress_struct* cinfo);
DOCCAM_API int fill_mem_input_buffer(jpeg_decompress_struct* cinfo);
DOCCAM_API void skip_input_data(jpeg_decompress_struct* cinfo, long count);
DOCCAM_API void term_source(jpeg_decompress_struct* cinfo);

// A libjpeg error exit: prints the pending message and jumps to the jump buffer that follows the
// error manager in its record.
DOCCAM_API void MyErrorExit(jpeg_common_struct* cinfo);

// Copies width pixels of three bytes from src to dst. 0 done; -1, and nothing copied, when
// bitsPerPixel is not 24. The third argument is not used.
DOCCAM_API int CovertOneLine(int width, int bitsPerPixel, int third, unsigned char* src,
                             unsigned char* dst);

// --- YUYV -------------------------------------------------------------------------------------

// Converts width x height pixels of packed YUYV to three bytes a pixel, red first but for the first
// two pixels, which are blue first. Reads 4 and writes 6 bytes beyond the frame's end.
DOCCAM_API void yuyv_to_rgb888(unsigned char* src, unsigned char* dst, int width, int height);

// --- Preview ----------------------------------------------------------------------------------
//
// The host declares its display area, the form; the preview callback receives the visible part of
// each frame, scaled, and where in the form to draw it. Call these from one thread at a time, host
// or callback; the next frame follows. A frame that the view does not fit is not shown.

// Declares a form of width x height pixels and fits the whole frame into it, in its middle and at
// most at true size. The first form of a session sizes the preview buffer: declare the form anew
// after each openCamera, and reopen the camera for a larger buffer, as pictures beyond it are left
// out. A side below 1, or a form of more than 2^31 bytes, provides no buffer; nothing is shown.
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
// picture. Throws cv::Exception, and writes nothing, when the view does not lie inside frame.
DOCCAM_API void VideoZoomToWeb(cv::Mat frame, unsigned char* out);

// The same into out at out's own size. The caller sees the result if out is of frame's type.
DOCCAM_API void VideoZoomToWebEx(cv::Mat frame, cv::Mat out);

// --- Rotation ---------------------------------------------------------------------------------

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

// --- The sheet's outline ----------------------------------------------------------------------

// Finds the sheet in the red-first frame of width x height pixels, rows without padding, and keeps
// its four corners for the next still. drawFlag 1 draws its outline into the frame in green. 0
// found; -1 the frame has no outline, or is null or under four pixels wide or high; -2 no outline
// is large enough. The corners stay as they were unless 0 is returned. Streaming thread.
DOCCAM_API int DrawingEdge(unsigned char* data, int width, int height, int drawFlag);

// Measures the sheet whose corners are points, x0, y0 ... x3, y3, and keeps its bounding box and
// page size for the still in work. Returns by how many degrees clockwise it must be turned to lie
// straight: about 0 to 45, or 315 and more; 0, and nothing kept, for null. Streaming thread.
DOCCAM_API float GetAngle(int* points);

// --- Stills and files -------------------------------------------------------------------------

// Turns the frame img into a document image as the settings say and saves it at path. cropMode 1
// crops to the sheet that DrawingEdge found last, and straightens it. format is not used. Leaves
// img's pixels alone. Returns 0. Throws cv::Exception when the sheet's corners give no region of
// the frame. Streaming thread.
DOCCAM_API int capture(char* path, int format, int cropMode, cv::Mat img);

// Saves the blue-first image img at path in the set colour mode. Returns 0 whether or not a file
// was written. Throws std::out_of_range for a path under three characters.
DOCCAM_API int SaveImage(char* path, cv::Mat img);

// Saves img as a one-page PDF at path by way of a JPEG of the same base name in the user's home
// directory, which stays there. Returns 0. Throws cv::Exception when path names no file type.
DOCCAM_API int TempImgToPdf(char* path, cv::Mat img);

// The PDF library's error callback: prints the two codes and marks the document as spoilt.
DOCCAM_API void error_handler(unsigned long error_no, unsigned long detail_no, void* user_data);

// --- Cleaning ---------------------------------------------------------------------------------

struct _IplImage; // NOLINT(bugprone-reserved-identifier): the image library's C image
using IplImage = _IplImage;

// Makes dst a copy of src with every sample s, taken as 0 to 1, raised to the power fGamma. Images
// with neither one nor three channels are copied unchanged. src and dst may be the same image.
DOCCAM_API void GammaCorrection(cv::Mat& src, cv::Mat& dst, float fGamma);

// The cleaning operations take images of three channels and throw cv::Exception for any other and
// for an empty one.
//
// The first paints the dark margins around the sheet white, and the first three pixels of the
// sheet, in src's own pixels. A picture without a large bright region becomes all white.
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

// --- Codes ------------------------------------------------------------------------------------
//
// Each returns the bytes of one symbol, and the empty text when none was found. mode 0 takes the
// first symbol that is no QR code, any other value the first QR code. Any thread. Images keep their
// pixels.

// Scans an 8-bit grey image once. An image of another type, or an empty one, shows no symbol.
DOCCAM_API std::string ZbarDecoder(cv::Mat gray, int mode);

// Scans a binary image, and once more after an opening by 3 x 3 pixels if that yields nothing.
// Throws cv::Exception for an empty image.
DOCCAM_API std::string GetQRInBinImg(cv::Mat bin, int mode);

// Scans an 8-bit grey image made binary in one way after the other until a text is found: Otsu's
// threshold, an adaptive one, then Otsu's raised by steps of 20 up to 239. Throws cv::Exception for
// an image of another type.
DOCCAM_API std::string GetQR(cv::Mat gray, int mode);

// Reads a code from a red-first frame: GetQR on its grey image. Throws cv::Exception for an empty
// frame.
DOCCAM_API std::string BarQrDecodePro(cv::Mat frame, int mode);

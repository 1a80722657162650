/*
 * doccam: document cameras on Linux. The plain C interface.
 *
 * All state is process-wide: one camera can be open at a time. Unless documented otherwise, call
 * the functions from one host thread of your choice. Callbacks run on the library's streaming
 * thread. A callback may change settings, close the camera and open it again, but must not wait for
 * something that the stream delivers, as captureImage does. results.h gives names and texts to the
 * results. Diagnostics go to standard output. No function declared here throws. The library stays
 * loaded until the process ends; a session still open is ended at exit. A forked child has no
 * session and must end with _exit().
 */
#ifndef DOCCAM_DOCCAM_H
#define DOCCAM_DOCCAM_H

#include "export.h"
#include "results.h"
#include "types.h"
#include "version.h"

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/* --- Callbacks ------------------------------------------------------------------------------ */

/*
 * Registers the callback for decoded frames. Only the first registration counts: it cannot be
 * replaced or removed, and later ones are ignored. Any thread. Always returns 0.
 */
DOCCAM_API int SetDataCallback(FrameCallback callback);

/*
 * Registers the callback for faults, replacing the previous one; null removes it. Without one, an
 * exception on the streaming thread ends the process and the end of a stream is not reported. With
 * one, an exception ends only the stage that raised it, and the stream continues. Any thread.
 * Returns 0.
 */
DOCCAM_API int SetFaultCallback(FaultCallback callback);

/*
 * Inside a fault callback, returns the cause of the reported fault, one of DoccamCause; anywhere
 * else DOCCAM_CAUSE_NONE. Later versions may add causes. Any thread.
 */
DOCCAM_API int doccam_fault_cause(void);

/* --- Settings: any thread, effective from the next frame or still, kept across sessions ------ */

/* Turns the live picture clockwise by angle quarter turns, 0 to 3. Other values are stored but
 * deliver no frames, stills or codes. Returns 0. */
DOCCAM_API int SetRotate(int angle);

/* The pixel format that the next openCamera asks for: 0 MJPEG, anything else YUYV (the default). */
DOCCAM_API void SetVideoFormat(int format);

/* 1: find the sheet, show its outline live and crop stills to it. Otherwise the whole frame. */
DOCCAM_API void SetCutType(int value);

/* Stills: 0 colour, 1 grey, 2 black and white. With any other value no still is written. */
DOCCAM_API void SetColorMode(int value);

/* Stores a value for the host. The file type of a still depends on its path's extension only. */
DOCCAM_API void SetFileFormat(int value);

/* Returns the value of the last SetFileFormat, initially 0. */
DOCCAM_API int GetFileFormat(void);

/* JPEG quality of stills and PDF pages, 0 to 100, initially 85. Passed to the encoder unchecked. */
DOCCAM_API void SetJpgQuality(int value);

/* 1: whiten the dark margins around the sheet in stills. Otherwise leave them. */
DOCCAM_API void SetDelBlackedge(int value);

/* 1: whiten the paper's background in stills. Otherwise leave it. */
DOCCAM_API void SetDelBackColor(int value);

/*
 * Chooses what finds the sheet and makes stills.
 * 0 (initially): the largest bright shape; its smallest rectangle is cropped and straightened.
 * 1: the page engine of page.h. With SetCutType(1) a sheet seen at an angle becomes an upright page
 * of its own proportions; without a sheet, a still is the whole frame. Either of SetDelBlackedge(1)
 * and SetDelBackColor(1) gives the still the paper look, and black and white keeps thin strokes.
 * The outline of the sheet is drawn as ever; results, printed lines and files' names stay.
 * Returns 0; -1 for any other value, which changes nothing.
 */
DOCCAM_API int SetPageEngine(int engine);

/* An upload hook that does nothing. Returns 0. */
DOCCAM_API int HttpUpFile(char* file, char* url);

/* --- Discovery ------------------------------------------------------------------------------ */

/*
 * Enumerates the supported cameras and returns their number, 0 to 9, or -1 if udev cannot be used.
 * Cameras are indexed in the order of the supported-model table; of two cameras of the same model
 * only the first is found.
 */
DOCCAM_API int getDeviceCount(void);

/*
 * Returns the display name of camera index, or null if there is no such camera or its node cannot
 * be opened. The text is valid until the next call on any thread. Call it before openCamera: while
 * a camera streams it closes the session's descriptor.
 */
DOCCAM_API const char* getCameraName(int index);

/*
 * Return the device node of camera index, such as "/dev/video0", and its USB id, such as
 * "0c45:6366", as the last enumeration found them, or null if there is no such camera. Enumerate
 * first if none is known yet; open nothing, and leave a session alone. The text is valid until the
 * next enumeration. Host threads, one at a time.
 */
DOCCAM_API const char* doccam_camera_node(int index);
DOCCAM_API const char* doccam_camera_usb_id(int index);

/*
 * Enumerates the frame sizes of camera index and returns how many it offers in the format chosen
 * with SetVideoFormat, 0 on any failure. Ends a running session.
 */
DOCCAM_API int getCameraResolutionCount(int index);

/* Returns the number of sizes that the last enumeration found for the chosen format. index is
 * ignored. */
DOCCAM_API int getFormatResolutionCount(int index);

/*
 * Stores the index-th size (0-based) of the chosen format, in pixels.
 * 0: success, also for an index outside the list, which leaves both outputs unchanged.
 * -1: the chosen format has no size. -2: no size is known at all; enumerate first.
 * width or height may be null and is then skipped.
 */
DOCCAM_API int getCameraResolution(int index, int* width, int* height);

/* --- Session -------------------------------------------------------------------------------- */

/*
 * Opens camera index and starts streaming at width x height pixels in the chosen format.
 * 3672 x 2856 is captured as 3264 x 2448, and whole-frame stills are enlarged to it. Returns
 * DOCCAM_OK once it is streaming, otherwise the DOCCAM_OPEN_... code of the step that failed.
 */
DOCCAM_API int openCamera(int index, int width, int height);

/*
 * Ends the session; always returns 0, also without one. Takes about 0.8 seconds, plus up to 2 while
 * a callback is running, plus the time of a still or code in progress; for a file whose writing
 * hangs it waits at most 9 seconds. When it returns, no callback is running and none will start,
 * unless a callback has blocked for seconds or is the caller: that callback keeps its pixels until
 * it returns, and a hanging file is completed when possible. Any thread. Of two simultaneous calls
 * one ends the session; the other waits for it or, in a callback, returns at once. In a child of
 * fork() it releases the child's share of the session; the parent's stream continues.
 */
DOCCAM_API int closeCamera(void);

/* --- Picture controls: while a session is streaming, one host thread at a time ---------------
 * selector: 0 brightness, 1 contrast, 2 saturation, 3 hue, 4 gain, 5 gamma. Any other selector
 * means the control last used by any function of this section. */

/* Gets the range, default and value of a control. 0 success; -1 no session or no such control; -2
 * it cannot be read. The outputs are written only on 0; a null one is skipped. */
DOCCAM_API int GetVideoCtlParam(int selector, int* minimum, int* maximum, int* defaultValue,
                                int* current);

/* Sets a control without checking its range. 0 success; -1 no session or refused. Selector 5 writes
 * to the control used last, not to gamma. */
DOCCAM_API int SetVideoCtlParam(int selector, int value);

/* Sets a control to its default and returns that default. -10001 no session, or the camera lacks
 * the control; -10002 it cannot be read; -10003 it cannot be written. */
DOCCAM_API int SetVideoCtlDefaultParam(int selector);

/* Toggles the camera's absolute zoom, which controls its focus, between 0 and 1. 0 success, or the
 * camera has none; -2 it cannot be read; -3 it cannot be written; -1 no session. */
DOCCAM_API int ManualFocus(void);

/* Switches auto-focus off and on, so that the camera focuses once. 0 success, or the camera has
 * none; -2 it cannot be read; -3, -4 the first or second write failed; -1 no session. */
DOCCAM_API int ManualFocusEx(void);

/* --- Stills --------------------------------------------------------------------------------- */

/*
 * Takes a still of the next frame and saves it at path, replacing an existing file. The extension
 * selects the type: jpg, pdf, or any other that OpenCV writes (png, bmp, tif). Waits up to 4
 * seconds. Returns 0 even if the still could not be taken or saved: check whether the file exists.
 * Without a fault callback, an unknown extension, a pdf path without a dot in its last part, a path
 * of less than three bytes, and a sheet whose corners lie outside the frame end the process. -1: no
 * camera is streaming, or path is null or has 255 bytes or more; then nothing is deleted or
 * requested. One host thread at a time.
 */
DOCCAM_API int captureImage(const char* path);

/* --- PDF files: one thread at a time, and none while a still is being saved as PDF ----------- */

/* Queues an image file (jpg or png) as a page for CombineToPDF. 0 queued, -1 no such file. */
DOCCAM_API int AddImageFileToPDF(const char* path);

/* Queues an image file for merging. 0 queued, -1 no such file. */
DOCCAM_API int AddImagePath(const char* path);

/*
 * Writes the queued files that still exist as pages of one PDF at path, one point per image pixel,
 * and empties the queue. With deleteSources the queued files are then deleted.
 * 0: a file is at path; -1: the queue was empty; -2: no file is at path, or an error was printed,
 * for example about a damaged picture or a full disk: then nothing is deleted, and an existing file
 * at path is unchanged. Do not queue path itself: as a source it would be deleted.
 */
DOCCAM_API int CombineToPDF(const char* path, bool deleteSources);

/* Starts the one PDF document, to be saved at path. Returns 0. */
DOCCAM_API int pdf_start(const char* path);

/* Adds one page that shows the image file (extension jpg or png, lower case) at one point per
 * pixel. Other types are skipped; an unreadable file makes the document fail. Returns 0. */
DOCCAM_API int pdf_addPage(const char* imagePath);

/* Saves and frees the document; after an error it is freed unsaved. Returns 0. */
DOCCAM_API int pdf_end(void);

/* --- Merging: not while another thread calls AddImagePath ------------------------------------ */

/*
 * Processes the files queued with AddImagePath for one merged picture at path. No layout for such a
 * picture exists yet: nothing is composed or written, whatever mergeMode is. reserved is unused.
 *  0: a file is at path; with deleteSources the queued files that still exist have been deleted.
 * -1: fewer than two files were queued; they stay queued.
 * -2: no file is at path; the queued files are kept.
 * Except for -1 the queue is empty afterwards.
 */
DOCCAM_API int MergeImages(const char* path, int mergeMode, int reserved, bool deleteSources);

/* --- Codes: mode 0 reads a bar code, any other value a QR code -------------------------------
 * Texts are the symbol's raw bytes; one that contains a zero byte appears to end there. */

/*
 * Reads a code from the next live frame and waits up to 10 seconds for it. Never null: returns an
 * empty text if the frame shows no such code, and the text of the last reading on a timeout; the
 * request then remains for a later frame. -99 requests nothing and returns the text of the last
 * reading. The text is valid until the streaming thread stores that of the next request. One host
 * thread at a time; not from a callback, which would wait for itself.
 */
DOCCAM_API const char* RecogBarQrCode(int mode);

/*
 * Reads a code from an image file in a single scan. Returns null if the file is not a readable
 * image or shows no symbol at all, and an empty text if it shows only symbols of the other kind.
 * The text is valid until fifteen further texts have been returned to any threads. Any thread.
 */
DOCCAM_API const char* RecogBarQrCodeFromFile(const char* path, int mode);

#ifdef __cplusplus
}
#endif

#endif

/*
 * doccam: document cameras on Linux. The plain C interface.
 *
 * All state is process-wide: one camera is open at a time. Unless a function says otherwise, call
 * it from one host thread of your choice. The callbacks run on the library's streaming thread. From
 * a callback a host may change settings, close the camera and open it again; it may not wait there
 * for something that the stream itself delivers, as captureImage does. Results have names and texts
 * in results.h. Diagnostics go to standard output. No exception leaves a function declared here.
 * The library stays loaded until the process ends, and a session open at exit is ended then. A
 * forked child has none and ends with _exit().
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
 * Registers the callback for faults, replacing the one before; null removes it. Without one, an
 * exception on the streaming thread ends the process and the end of a stream is not told. With one,
 * an exception ends only the stage it arose in, and the stream goes on. Any thread. Returns 0.
 */
DOCCAM_API int SetFaultCallback(FaultCallback callback);

/*
 * The cause, one of DoccamCause, of the fault that the calling thread is being told of: for use
 * within a fault callback. DOCCAM_CAUSE_NONE anywhere else. Later versions may add causes. Any
 * thread.
 */
DOCCAM_API int doccam_fault_cause(void);

/* --- Settings: any thread, effective from the next frame or still, kept across sessions ------ */

/* Turns the live picture by angle quarter turns clockwise, 0 to 3. Other values are stored, turn
 * nothing, and make stills and code requests do nothing. Returns 0. */
DOCCAM_API int SetRotate(int angle);

/* The pixel format that the next openCamera asks for: 0 MJPEG, anything else YUYV (the default). */
DOCCAM_API void SetVideoFormat(int format);

/* 1: find the sheet, show its outline live and crop stills to it. Otherwise the whole frame. */
DOCCAM_API void SetCutType(int value);

/* Stills: 0 colour, 1 grey, 2 black and white. With any other value no still is written. */
DOCCAM_API void SetColorMode(int value);

/* A value kept for the host. The file type of a still follows its path's extension alone. */
DOCCAM_API void SetFileFormat(int value);

/* The value of the last SetFileFormat, 0 at first. */
DOCCAM_API int GetFileFormat(void);

/* JPEG quality of stills and PDF pages, 0 to 100; 85 at first. Handed to the encoder unchecked. */
DOCCAM_API void SetJpgQuality(int value);

/* 1: whiten the dark margins around the sheet in stills. Otherwise leave them. */
DOCCAM_API void SetDelBlackedge(int value);

/* 1: whiten the paper's background in stills. Otherwise leave it. */
DOCCAM_API void SetDelBackColor(int value);

/* An upload hook that does nothing. Returns 0. */
DOCCAM_API int HttpUpFile(char* file, char* url);

/* --- Discovery ------------------------------------------------------------------------------ */

/*
 * Looks for the supported cameras and returns how many there are, 0 to 9, or -1 when the device
 * manager cannot be used. A camera's index is its place among the found ones, in the order of the
 * supported-model table; of two cameras of one model only the first is found.
 */
DOCCAM_API int getDeviceCount(void);

/*
 * The display name of camera index, or null when there is no such camera or its node cannot be
 * opened. The text stays valid until the next call on any thread. Call it before openCamera: on
 * a streaming camera it takes the session's descriptor away.
 */
DOCCAM_API const char* getCameraName(int index);

/*
 * Asks camera index for its frame sizes and returns how many it offers in the format chosen with
 * SetVideoFormat, 0 on any failure. Stops a running session.
 */
DOCCAM_API int getCameraResolutionCount(int index);

/* The number of sizes known from the last enumeration for the chosen format. index is ignored. */
DOCCAM_API int getFormatResolutionCount(int index);

/*
 * Writes the index-th size (0-based) of the chosen format, in pixels.
 * 0: done, and also for an index outside the list, which leaves both outputs as they were.
 * -1: the chosen format has no size. -2: no size is known at all; enumerate first.
 * width or height may be null; that output is then skipped.
 */
DOCCAM_API int getCameraResolution(int index, int* width, int* height);

/* --- Session -------------------------------------------------------------------------------- */

/*
 * Opens camera index and starts streaming at width x height pixels in the chosen format.
 * 3672 x 2856 is captured as 3264 x 2448, and whole-frame stills are enlarged to it. Returns
 * DOCCAM_OK when it is streaming, otherwise one of DOCCAM_OPEN_..., which name the step that
 * failed.
 */
DOCCAM_API int openCamera(int index, int width, int height);

/*
 * Ends the session; always returns 0, also without one. Takes about 0.8 seconds, up to 2 more
 * while a callback is running, and as long as a still or a code in work takes, but for a file whose
 * writing hangs: 9 seconds more at most. When it returns, no callback is running and none will
 * start, unless a callback was itself blocked for seconds or is the caller: that callback keeps its
 * pixels until it returns, and a file that hangs is completed when it can be. Any thread; of two
 * calls at once one ends the session, and the other waits for it or, in a callback, returns at
 * once. In a child of fork() it gives up the child's share of the session; the parent's stream goes
 * on.
 */
DOCCAM_API int closeCamera(void);

/* --- Picture controls: while a session is streaming, one host thread at a time ---------------
 * selector: 0 brightness, 1 contrast, 2 saturation, 3 hue, 4 gain, 5 gamma. Any other selector
 * leaves the control chosen before, by any function of this section. */

/* Range, default and value of a control. 0 done; -1 no session or no such control; -2 it cannot be
 * read. The outputs are written only on 0; a null one is skipped. */
DOCCAM_API int GetVideoCtlParam(int selector, int* minimum, int* maximum, int* defaultValue,
                                int* current);

/* Sets a control, unchecked against its range. 0 done; -1 no session or refused. Selector 5 writes
 * to the control used last, not to gamma. */
DOCCAM_API int SetVideoCtlParam(int selector, int value);

/* Sets a control to its default and returns that default. -10001 no session, or the control is
 * unknown to the camera; -10002 it cannot be read; -10003 it cannot be written. */
DOCCAM_API int SetVideoCtlDefaultParam(int selector);

/* Switches the camera's absolute zoom, which stands for its focus, between 0 and 1. 0 done, or the
 * camera has none; -2 it cannot be read; -3 it cannot be written; -1 no session. */
DOCCAM_API int ManualFocus(void);

/* Switches auto-focus off and on, so that the camera focuses once. 0 done, or the camera has none;
 * -2 it cannot be read; -3, -4 the first or second write failed; -1 no session. */
DOCCAM_API int ManualFocusEx(void);

/* --- Stills --------------------------------------------------------------------------------- */

/*
 * Takes a still of the next frame and saves it at path, replacing a file that is there. The
 * extension selects the type: jpg, pdf, or whatever else OpenCV writes (png, bmp, tif).
 * Waits up to 4 seconds for it. Returns 0 also when the still could not be taken or saved: look
 * whether the file exists. An extension that names no type, a pdf path without a dot in its last
 * part, a path of less than three bytes, and a sheet whose corners lie outside the frame end the
 * process, unless there is a fault callback. -1: no camera is streaming, or path is null, or has
 * 255 bytes or more (nothing is deleted or requested then). One host thread at a time.
 */
DOCCAM_API int captureImage(const char* path);

/* --- PDF files: one thread at a time, and none while a still is being saved as PDF ----------- */

/* Queues an image file (jpg or png) as a page for CombineToPDF. 0 queued, -1 no such file. */
DOCCAM_API int AddImageFileToPDF(const char* path);

/* Queues an image file for merging. 0 queued, -1 no such file. */
DOCCAM_API int AddImagePath(const char* path);

/*
 * Writes the queued files that still exist as pages of one PDF at path, one image pixel to one
 * point, and empties the queue. With deleteSources the queued files are deleted afterwards.
 * 0: a file is at path; -1: the queue was empty; -2: no file is at path, or an error was printed,
 * as for a picture that is damaged or a full disk: then nothing is deleted, and a file that was at
 * path before stays as it was. Do not queue path itself: as a source it would be deleted.
 */
DOCCAM_API int CombineToPDF(const char* path, bool deleteSources);

/* Begins the one PDF document, to be saved at path. Returns 0. */
DOCCAM_API int pdf_start(const char* path);

/* Adds one page that shows the image file (extension jpg or png, lower case) at one pixel to one
 * point. Other types are skipped; an unreadable file spoils the document. Returns 0. */
DOCCAM_API int pdf_addPage(const char* imagePath);

/* Saves and frees the document; one spoilt by an error is freed unsaved. Returns 0. */
DOCCAM_API int pdf_end(void);

/* --- Merging: not while another thread calls AddImagePath ------------------------------------ */

/*
 * Settles the files queued with AddImagePath for one merged picture at path. No layout of such a
 * picture exists yet: nothing is composed and nothing is written, whatever mergeMode says. reserved
 * is not used.
 *  0: a file is at path; with deleteSources the queued files that still exist have been deleted.
 * -1: fewer than two files were queued; they stay queued.
 * -2: no file is at path; the queued files are kept.
 * Except for -1 the queue is empty afterwards.
 */
DOCCAM_API int MergeImages(const char* path, int mergeMode, int reserved, bool deleteSources);

/* --- Codes: mode 0 reads a bar code, any other value a QR code -------------------------------
 * Texts are the symbol's bytes as they are; one that holds a zero byte seems to end there. */

/*
 * Reads a code from the next live frame and waits up to 10 seconds for it. Never null: the empty
 * text when the frame shows no such code, and the text of the last reading when no answer came in
 * time; the request then stays and a later frame answers it. -99 requests nothing and returns the
 * text of the last reading. The text lives until the streaming thread stores that of the next
 * request. One host thread at a time; not from a callback, which would wait for itself.
 */
DOCCAM_API const char* RecogBarQrCode(int mode);

/*
 * Reads a code from an image file, in a single scan. Null when the file is no readable image or
 * shows no symbol at all; the empty text when it shows symbols, but none of the wanted kind. The
 * text lives until fifteen further texts have been returned, to whichever threads. Any thread.
 */
DOCCAM_API const char* RecogBarQrCodeFromFile(const char* path, int mode);

#ifdef __cplusplus
}
#endif

#endif

/*
 * The results of the library's functions, by name and as text.
 *
 * Each function numbers its failures from -1 down, so a number alone is ambiguous: -1 is a missing
 * camera for openCamera and an empty queue for CombineToPDF. Every operation therefore has its own
 * constant, such as DOCCAM_OPEN, which prefixes its results, such as DOCCAM_OPEN_NO_NODE.
 */
#ifndef DOCCAM_RESULTS_H
#define DOCCAM_RESULTS_H

#include "export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The operations; some are shared by several functions. */
typedef enum DoccamOperation {
    DOCCAM_DEVICES = 1,       /* getDeviceCount */
    DOCCAM_SIZE = 2,          /* getCameraResolution */
    DOCCAM_OPEN = 3,          /* openCamera */
    DOCCAM_CONTROL_GET = 4,   /* GetVideoCtlParam */
    DOCCAM_CONTROL_SET = 5,   /* SetVideoCtlParam */
    DOCCAM_CONTROL_RESET = 6, /* SetVideoCtlDefaultParam */
    DOCCAM_FOCUS = 7,         /* ManualFocus, ManualFocusEx */
    DOCCAM_STILL = 8,         /* captureImage */
    DOCCAM_QUEUE = 9,         /* AddImageFileToPDF, AddImagePath */
    DOCCAM_PDF = 10,          /* CombineToPDF */
    DOCCAM_MERGE = 11,        /* MergeImages */
    DOCCAM_GRAB = 12,         /* C++: grabImage */
    DOCCAM_DECODE = 13,       /* C++: Mjpeg2RgbConvert, Mjpeg2RgbConvertEx */
    DOCCAM_COPY_LINE = 14,    /* C++: CovertOneLine */
    DOCCAM_OUTLINE = 15,      /* C++: DrawingEdge */
    DOCCAM_VIEW = 16          /* C++: Web_SetMoveOffet, Web_ZoomIn, Web_RotateL and their like */
} DoccamOperation;

/* Results. The functions return them as int. */
typedef enum DoccamResult {
    DOCCAM_OK = 0, /* of every operation; getDeviceCount returns the number of cameras instead,
                      SetVideoCtlDefaultParam the control's value */

    DOCCAM_DEVICES_NO_UDEV = -1, /* the device manager cannot be used */

    DOCCAM_SIZE_NONE_IN_FORMAT = -1, /* the chosen format has no size */
    DOCCAM_SIZE_NONE_KNOWN = -2,     /* no camera's sizes have been enumerated */

    DOCCAM_OPEN_NO_CAMERA = -1,       /* no such camera */
    DOCCAM_OPEN_NO_SIZE = -2,         /* no frame size known, or one that no picture can have */
    DOCCAM_OPEN_NO_NODE = -3,         /* the node cannot be opened; -4 is not used */
    DOCCAM_OPEN_TRY_FORMAT = -5,      /* VIDIOC_TRY_FMT failed */
    DOCCAM_OPEN_SET_FORMAT = -6,      /* VIDIOC_S_FMT failed */
    DOCCAM_OPEN_GET_FORMAT = -7,      /* VIDIOC_G_FMT failed */
    DOCCAM_OPEN_REQUEST_BUFFERS = -8, /* VIDIOC_REQBUFS failed */
    DOCCAM_OPEN_TOO_FEW_BUFFERS = -9, /* the driver granted fewer than it was asked for */
    DOCCAM_OPEN_QUERY_BUFFER = -10,   /* VIDIOC_QUERYBUF failed */
    DOCCAM_OPEN_MAP_BUFFER = -11,     /* mmap failed */
    DOCCAM_OPEN_QUEUE_BUFFER = -12,   /* VIDIOC_QBUF failed */
    DOCCAM_OPEN_STREAM_ON = -13,      /* VIDIOC_STREAMON failed */
    DOCCAM_OPEN_INTERNAL = -14,       /* an error inside the library: out of memory */

    DOCCAM_CONTROL_GET_UNAVAILABLE = -1, /* no session, or no such control */
    DOCCAM_CONTROL_GET_UNREADABLE = -2,  /* VIDIOC_G_CTRL failed */

    DOCCAM_CONTROL_SET_REFUSED = -1, /* no session, or VIDIOC_S_CTRL failed */

    DOCCAM_CONTROL_RESET_UNAVAILABLE = -10001, /* no session, or no such control */
    DOCCAM_CONTROL_RESET_UNREADABLE = -10002,  /* VIDIOC_G_CTRL failed */
    DOCCAM_CONTROL_RESET_REFUSED = -10003,     /* VIDIOC_S_CTRL failed */

    DOCCAM_FOCUS_NO_SESSION = -1, /* no camera is streaming */
    DOCCAM_FOCUS_UNREADABLE = -2, /* VIDIOC_G_CTRL failed */
    DOCCAM_FOCUS_REFUSED = -3,    /* VIDIOC_S_CTRL failed */
    DOCCAM_FOCUS_LEFT_OFF = -4,   /* auto-focus was switched off, but not on again */

    DOCCAM_STILL_NOT_REQUESTED = -1, /* no session, or no path of less than 255 bytes */

    DOCCAM_QUEUE_NO_FILE = -1, /* no such file; nothing was queued */

    DOCCAM_PDF_NOTHING_QUEUED = -1, /* the queue is empty, or path is null */
    DOCCAM_PDF_NOT_WRITTEN = -2,    /* no file is at path, or an error was printed */

    DOCCAM_MERGE_TOO_FEW_QUEUED = -1, /* fewer than two files; they stay queued */
    DOCCAM_MERGE_NO_PICTURE = -2,     /* no file is at path */

    DOCCAM_GRAB_FAILED = -1,      /* the driver failed to hand over a frame */
    DOCCAM_GRAB_NO_BUFFER = -100, /* the driver named a buffer that does not exist */

    DOCCAM_DECODE_FAILED = -1, /* no JPEG, not a colour one, or larger than the output */

    DOCCAM_COPY_LINE_NOT_24_BITS = -1, /* a pixel that is not three bytes */

    DOCCAM_OUTLINE_NONE = -1,      /* the frame is null or too small, or shows no outline */
    DOCCAM_OUTLINE_TOO_SMALL = -2, /* no outline is as large as a sheet's */

    DOCCAM_VIEW_NO_SESSION = -1 /* no camera is streaming */
} DoccamResult;

/*
 * Describes result of operation, one of DoccamOperation, in an English sentence to show or log.
 * doccam_result_text(DOCCAM_OPEN, -3) is "The camera's device node cannot be opened." Successes
 * have texts, too. Never null: unknown results and operations have a sentence of their own. The
 * text is constant and valid as long as the process. Any thread.
 */
DOCCAM_API const char* doccam_result_text(int operation, int result);

#ifdef __cplusplus
}
#endif

#endif

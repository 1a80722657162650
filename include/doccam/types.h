/*
 * What a host and the library hand one another: callbacks, faults and their causes.
 */
#ifndef DOCCAM_TYPES_H
#define DOCCAM_TYPES_H

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Receives each decoded frame, on the streaming thread.
 * data: width x height pixels, 3 bytes each, red first, rows back to back. Valid during the call
 * only. Return quickly: the next frame waits.
 */
typedef void (*FrameCallback)(unsigned char* data, int width, int height);

/*
 * Receives each preview picture, on the streaming thread.
 * data: showWidth x showHeight pixels, 3 bytes each, red first, rows back to back. Valid during the
 * call only. Draw it with its top-left corner at (startX, startY) of the display area.
 */
typedef void (*WebFrameCallback)(unsigned char* data, int showWidth, int showHeight, int startX,
                                 int startY);

/*
 * What can go wrong where no caller gets a result.
 */
typedef enum DoccamFault {
    /* No more frames come: the camera was unplugged, its driver failed, its format is unknown. */
    DOCCAM_FAULT_STREAM_ENDED = 1,
    /* A requested still could not be taken or saved. */
    DOCCAM_FAULT_STILL = 2,
    /* A requested code could not be looked for; its text is empty. */
    DOCCAM_FAULT_CODE = 3,
    /* A preview picture could not be made, or its callback threw. */
    DOCCAM_FAULT_PREVIEW = 4,
    /* The sheet's outline could not be looked for. */
    DOCCAM_FAULT_OUTLINE = 5,
    /* A PDF document was spoilt and not saved. */
    DOCCAM_FAULT_DOCUMENT = 6,
    /* A frame could not be decoded or turned and was left out, or its callback threw. */
    DOCCAM_FAULT_FRAME = 7
} DoccamFault;

/*
 * What a fault comes from, where a host may act on it. The message says it in words.
 */
typedef enum DoccamCause {
    /* The calling thread is being told of no fault. */
    DOCCAM_CAUSE_NONE = 0,
    /* None of those below: an error of processing or of a callback, which the message names. */
    DOCCAM_CAUSE_OTHER = 1,
    /* The camera was unplugged. */
    DOCCAM_CAUSE_UNPLUGGED = 2,
    /* The driver handed over no frame, or one in a buffer that does not exist. */
    DOCCAM_CAUSE_DRIVER = 3,
    /* The stream's pixel format is neither MJPEG nor YUYV. */
    DOCCAM_CAUSE_PIXEL_FORMAT = 4,
    /* The file of a still could not be written. */
    DOCCAM_CAUSE_NOT_WRITTEN = 5
} DoccamCause;

/*
 * Receives a fault, one of DoccamFault, and why it arose, in English. message is valid during the
 * call only. Runs on the streaming thread, or for a document on the thread that works on it; of
 * the library it may call what the other callbacks may. A still or code request is answered after
 * the call. An exception that the callback throws is named on standard error and goes no further.
 */
typedef void (*FaultCallback)(int fault, const char* message);

#ifdef __cplusplus
}
#endif

#endif

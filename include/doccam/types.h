/*
 * Types shared by host and library: callbacks, faults and their causes.
 */
#ifndef DOCCAM_TYPES_H
#define DOCCAM_TYPES_H

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Receives each decoded frame, on the streaming thread.
 * data: width x height pixels, 3 bytes each, red first, rows back to back. Valid only during the
 * call. Return quickly: the next frame is waiting.
 */
typedef void (*FrameCallback)(unsigned char* data, int width, int height);

/*
 * Receives each preview picture, on the streaming thread.
 * data: showWidth x showHeight pixels, 3 bytes each, red first, rows back to back. Valid only
 * during the call. Draw it with its top-left corner at (startX, startY) of the display area.
 */
typedef void (*WebFrameCallback)(unsigned char* data, int showWidth, int showHeight, int startX,
                                 int startY);

/*
 * Failures where no function can return a result.
 */
typedef enum DoccamFault {
    /* The stream ended: the camera was unplugged, its driver failed, or its format is unknown. */
    DOCCAM_FAULT_STREAM_ENDED = 1,
    /* A requested still could not be taken or saved. */
    DOCCAM_FAULT_STILL = 2,
    /* The search for a requested code failed; its text is empty. */
    DOCCAM_FAULT_CODE = 3,
    /* A preview picture could not be made, or its callback threw. */
    DOCCAM_FAULT_PREVIEW = 4,
    /* The search for the sheet's outline failed. */
    DOCCAM_FAULT_OUTLINE = 5,
    /* A PDF document failed and was not saved. */
    DOCCAM_FAULT_DOCUMENT = 6,
    /* A frame could not be decoded or turned and was skipped, or its callback threw. */
    DOCCAM_FAULT_FRAME = 7
} DoccamFault;

/*
 * The cause of a fault, for hosts to act on. The message describes it in words.
 */
typedef enum DoccamCause {
    /* The calling thread is not in a fault callback. */
    DOCCAM_CAUSE_NONE = 0,
    /* None of those below: an error in processing or in a callback, described by the message. */
    DOCCAM_CAUSE_OTHER = 1,
    /* The camera was unplugged. */
    DOCCAM_CAUSE_UNPLUGGED = 2,
    /* The driver returned no frame, or one in a buffer that does not exist. */
    DOCCAM_CAUSE_DRIVER = 3,
    /* The stream's pixel format is neither MJPEG nor YUYV. */
    DOCCAM_CAUSE_PIXEL_FORMAT = 4,
    /* The file of a still could not be written. */
    DOCCAM_CAUSE_NOT_WRITTEN = 5
} DoccamCause;

/*
 * Receives a fault, one of DoccamFault, and its reason in English. message is valid only during the
 * call. Runs on the streaming thread, or for a document on the thread that works on it, and may
 * call the same functions as the other callbacks. A still or code request completes after the call.
 * An exception from the callback is printed on standard error and goes no further.
 */
typedef void (*FaultCallback)(int fault, const char* message);

#ifdef __cplusplus
}
#endif

#endif

/*
 * doccam: a frame as the camera sent it.
 */
#ifndef DOCCAM_FRAME_H
#define DOCCAM_FRAME_H

#include "export.h"

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * In the callback of SetDataCallback: the JPEG whose pixels the callback was given, as the camera
 * sent it, not turned by SetRotate, and in *length its number of bytes. They stay until the
 * callback returns. A frame that was damaged on its way is no sound JPEG: its pixels may be those
 * of an earlier one. Null, and 0, for YUYV, for a frame whose length the driver does not say, and
 * outside of the callback. length may be null. Copies nothing and takes no lock.
 */
DOCCAM_API const unsigned char* doccam_frame_bytes(size_t* length);

#ifdef __cplusplus
}
#endif

#endif

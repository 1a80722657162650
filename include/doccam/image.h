/*
 * doccam: images that a host hands over, to the functions that keep no state.
 */
#ifndef DOCCAM_IMAGE_H
#define DOCCAM_IMAGE_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The largest width and height of an image, and its largest number of pixels. */
#define DOCCAM_PAGE_MAX_SIDE 32767
#define DOCCAM_PAGE_MAX_PIXELS 268435456

/* Channels and their order. */
enum DoccamPixels {
    DOCCAM_PIXELS_GREY = 1, /* one byte */
    DOCCAM_PIXELS_BGR = 3,  /* blue, green, red, a byte each */
    DOCCAM_PIXELS_RGB = 4,  /* red, green, blue, a byte each, as frame callbacks get them */
    DOCCAM_PIXELS_BITS = 5  /* results only: one bit, 1 white, the highest of a byte leftmost */
};

/* An image of the caller's; only read. */
typedef struct DoccamImage {
    const unsigned char* data; /* the top left pixel */
    int width;                 /* in pixels */
    int height;
    size_t stride; /* bytes from a row to the next */
    int pixels;    /* DOCCAM_PIXELS_GREY, _BGR or _RGB */
} DoccamImage;

#ifdef __cplusplus
}
#endif

#endif

/*
 * doccam: pages out of pictures. Finding sheets in a picture, making one upright, and making it
 * look like paper. The functions keep no state: any thread, several at once, no camera needed.
 */
#ifndef DOCCAM_PAGE_H
#define DOCCAM_PAGE_H

#include "export.h"
#include "image.h"

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Results below 0. */
#define DOCCAM_PAGE_BAD_IMAGE (-1) /* no pixels, a size beyond the limits, a stride below a row */
/* A null pointer, a value that is none of those listed, a capacity below 1. */
#define DOCCAM_PAGE_BAD_ARGUMENT (-2)
/* Corners that are no convex quadrilateral, clockwise, or would make a page beyond the limits. */
#define DOCCAM_PAGE_BAD_SHEET (-3)
#define DOCCAM_PAGE_NO_MEMORY (-4)
#define DOCCAM_PAGE_FAILED (-5) /* anything else; never seen */

/* A result; free it with doccam_page_free. */
typedef struct DoccamPage {
    unsigned char* data;
    int width;
    int height;
    size_t stride;
    int pixels;
} DoccamPage;

/*
 * A sheet in an image. Its corners are clockwise, beginning with the one that is nearest to the top
 * left, in pixels: the centre of the top left pixel is (0, 0), its outer corner (-0.5, -0.5).
 */
typedef struct DoccamSheet {
    double corners[4][2]; /* x and y of each; on the image's border where it cuts the sheet */
    double confidence;    /* 0 to 1 */
    int cut;              /* 1 if part of the sheet lies outside of the image */
} DoccamSheet;

/*
 * Finds sheets of paper in image, the surest first, and writes at most capacity of them to sheets.
 * last may be a sheet that was found in an earlier picture of the same camera: it is looked for
 * there first, which takes a fraction of the time, and then found alone. Returns the number
 * written, 0 for none, or an error.
 */
DOCCAM_API int doccam_find_sheets(const DoccamImage* image, const DoccamSheet* last,
                                  DoccamSheet* sheets, int capacity);

/*
 * Makes sheet an upright rectangle of the sheet's own proportions, with no more pixels than the
 * image has of it, and the image's channels. Parts outside of the image are white. Returns 0, and
 * the page in *page; or an error, and *page null.
 */
DOCCAM_API int doccam_rectify(const DoccamImage* image, const DoccamSheet* sheet,
                              DoccamPage** page);

/*
 * The size in pixels of the page that doccam_rectify makes of sheet in image. Returns 0, or an
 * error, and then writes nothing.
 */
DOCCAM_API int doccam_rectified_size(const DoccamImage* image, const DoccamSheet* sheet, int* width,
                                     int* height);

enum DoccamLook {
    DOCCAM_LOOK_PHOTO = 0, /* as seen */
    DOCCAM_LOOK_PAPER = 1  /* evenly lit: white paper, dark ink, pictures and marks kept */
};

enum DoccamColour {
    DOCCAM_COLOUR = 0,            /* the channels of the page */
    DOCCAM_COLOUR_GREY = 1,       /* DOCCAM_PIXELS_GREY */
    DOCCAM_COLOUR_BLACK_WHITE = 2 /* DOCCAM_PIXELS_BITS */
};

/*
 * Gives page, a rectified sheet, a look and a colour. Returns 0, and the result in *result; or an
 * error, and *result null.
 */
DOCCAM_API int doccam_look(const DoccamImage* page, int look, int colour, DoccamPage** result);

/* Frees a result; nothing for null. */
DOCCAM_API void doccam_page_free(DoccamPage* page);

#ifdef __cplusplus
}
#endif

#endif

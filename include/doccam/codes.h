/*
 * doccam: bar codes and matrix codes in pictures, all of them. The functions keep no state: any
 * thread, several at once, no camera needed.
 */
#ifndef DOCCAM_CODES_H
#define DOCCAM_CODES_H

#include "export.h"
#include "image.h"

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Symbologies; several of them, combined with |, are a set. */
enum DoccamSymbology {
    DOCCAM_EAN_13 = 1 << 0,
    DOCCAM_EAN_8 = 1 << 1,
    DOCCAM_UPC_A = 1 << 2, /* with 12 digits; an EAN-13 that begins with 0 is the same code */
    DOCCAM_UPC_E = 1 << 3, /* with 8 digits, not expanded */
    DOCCAM_DATABAR = 1 << 4,
    DOCCAM_DATABAR_EXPANDED = 1 << 5,
    DOCCAM_CODE_128 = 1 << 6,
    DOCCAM_CODE_93 = 1 << 7,
    DOCCAM_CODE_39 = 1 << 8,
    DOCCAM_CODABAR = 1 << 9, /* with its start and stop letters */
    DOCCAM_ITF = 1 << 10,
    DOCCAM_QR = 1 << 11,
    DOCCAM_MICRO_QR = 1 << 12,
    DOCCAM_DATA_MATRIX = 1 << 13,
    DOCCAM_AZTEC = 1 << 14,
    DOCCAM_PDF417 = 1 << 15,
    DOCCAM_MAXICODE = 1 << 16
};

#define DOCCAM_SYMBOLOGIES_LINEAR 0x7ffU
#define DOCCAM_SYMBOLOGIES_MATRIX 0x1f800U
#define DOCCAM_SYMBOLOGIES_ALL 0x1ffffU

/* Results below 0. */
#define DOCCAM_CODES_BAD_IMAGE                                                                     \
    (-1) /* no pixels, a size beyond the limits, a stride below a row                              \
          */
/* A null pointer, a set that is empty or has other bits, seconds below 0 or no number. */
#define DOCCAM_CODES_BAD_ARGUMENT (-2)
#define DOCCAM_CODES_NO_MEMORY (-4)
#define DOCCAM_CODES_FAILED (-5) /* anything else; never seen */

/* A code in an image. */
typedef struct DoccamCode {
    int symbology; /* one of DoccamSymbology */
    /* In UTF-8, ending with a zero byte that text_size does not count; the text may have others. */
    const char* text;
    size_t text_size;
    /* As encoded, before any conversion to text. In both, the separators of GS1 are bytes 29. */
    const unsigned char* bytes;
    size_t bytes_size;
    const char* addon; /* the 2 or 5 digits beside an EAN or UPC; "" for none */
    /*
     * x and y of each corner, clockwise from the code's own top left, in pixels: the centre of the
     * top left pixel is (0, 0). Of linear codes, where lines across the bars were read.
     */
    double corners[4][2];
} DoccamCode;

/* The codes of an image, from top to bottom; free them with doccam_codes_free. */
typedef struct DoccamCodes {
    const DoccamCode* codes; /* null if count is 0 */
    size_t count;
    int complete; /* 0: the time ran out before everything had been tried */
} DoccamCodes;

/*
 * Reads all codes in image whose symbologies are in the set. What two readers disagree on, and what
 * one alone read of a symbology without a check digit and on few lines, is left out. After a first
 * pass over the image, whatever else looks like a code is tried in other ways until that many
 * seconds have passed since the call; 0 seconds are the first pass alone, which may take longer.
 * Returns the number of codes, and the codes in *result; or an error, and *result null.
 */
DOCCAM_API int doccam_read_codes(const DoccamImage* image, unsigned symbologies, double seconds,
                                 DoccamCodes** result);

/* Frees a result; nothing for null. */
DOCCAM_API void doccam_codes_free(DoccamCodes* codes);

/* A symbology's name, as "EAN-13"; null if it is none. */
DOCCAM_API const char* doccam_symbology_name(int symbology);

#ifdef __cplusplus
}
#endif

#endif

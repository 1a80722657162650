// The mask of a picture's dark margins as a C image.
#include "docimage/clean/black_edge.h"
#include "docimage/clean/legacy_image.h"

#include <doccam/doccam.hpp>

IplImage* FillBlackEdgeToWhite(IplImage* src) {
    return doccam::newImageOf(doccam::marginMask(doccam::viewOf(src)));
}

// The version of the loaded library.
#include <doccam/doccam.h>

int doccam_version() {
    return DOCCAM_VERSION;
}

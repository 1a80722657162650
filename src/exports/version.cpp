// Which version of the library is loaded.
#include <doccam/doccam.h>

int doccam_version() {
    return DOCCAM_VERSION;
}

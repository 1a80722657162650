#include "api/library_state.h"

namespace doccam {

// Built at first use, which is at load: other parts of the library fill it while they load.
LibraryState& state() {
    static LibraryState instance;
    return instance;
}

} // namespace doccam

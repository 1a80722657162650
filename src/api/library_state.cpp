#include "api/library_state.h"

namespace doccam {
namespace {
LibraryState instance;
}

LibraryState& state() {
    return instance;
}

} // namespace doccam

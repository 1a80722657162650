#include "state/library_state.h"

#include <cstddef>
#include <new>

namespace doccam {

// Built at first use, which is at load: other parts of the library fill it while they load. Never
// destroyed: at the exit of the process a callback may still be running on it.
LibraryState& state() {
    alignas(LibraryState) static std::byte storage[sizeof(LibraryState)];
    static LibraryState& instance = *new (storage) LibraryState;
    return instance;
}

} // namespace doccam

#include "state/library_state.h"

#include <cstddef>
#include <new>

namespace doccam {

// Built at first use, while the library loads. Never destroyed: at process exit a callback may
// still be running on it.
LibraryState& state() {
    alignas(LibraryState) static std::byte storage[sizeof(LibraryState)];
    static LibraryState& instance = *new (storage) LibraryState;
    return instance;
}

} // namespace doccam

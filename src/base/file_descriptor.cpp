#include "base/file_descriptor.h"

#include <unistd.h>

namespace doccam {

void FileDescriptor::reset(int descriptor) {
    if (valid()) {
        close(descriptor_);
    }
    descriptor_ = descriptor;
}

} // namespace doccam

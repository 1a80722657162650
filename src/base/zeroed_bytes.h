// Zero-initialised bytes. The system provides pages only when they are written.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace doccam {

class ZeroedBytes {
  public:
    // Throws std::bad_alloc.
    explicit ZeroedBytes(std::size_t size)
      : bytes_(static_cast<unsigned char*>(std::calloc(size, 1))) {
        if (!bytes_ && size > 0) {
            throw std::bad_alloc();
        }
    }

    unsigned char* data() const { return bytes_.get(); }

  private:
    struct Release {
        void operator()(unsigned char* bytes) const { std::free(bytes); }
    };

    std::unique_ptr<unsigned char, Release> bytes_;
};

} // namespace doccam

// The C library's functions that the interposed ones replace.
#pragma once

#include <dlfcn.h>

#include <atomic>

namespace doccam::virtualcam {

// Looked up on the first call, which may precede any constructor.
template <typename Function>
class Next {
  public:
    constexpr explicit Next(const char* name)
      : name_(name) {}

    Function* get() {
        Function* found = found_.load(std::memory_order_relaxed);
        if (found == nullptr) {
            found = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name_));
            found_.store(found, std::memory_order_relaxed);
        }
        return found;
    }

    template <typename... Arguments>
    auto operator()(Arguments... arguments) {
        return get()(arguments...);
    }

  private:
    const char* name_;
    std::atomic<Function*> found_{nullptr};
};

} // namespace doccam::virtualcam

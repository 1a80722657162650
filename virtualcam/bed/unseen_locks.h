// Calls into GLib under the thread sanitizer.
#pragma once

extern "C" {
// Defined only under the thread sanitizer.
__attribute__((weak)) void AnnotateIgnoreReadsBegin(const char* file, int line);
__attribute__((weak)) void AnnotateIgnoreReadsEnd(const char* file, int line);
__attribute__((weak)) void AnnotateIgnoreWritesBegin(const char* file, int line);
__attribute__((weak)) void AnnotateIgnoreWritesEnd(const char* file, int line);
}

namespace doccam::virtualcam {

// While alive, the sanitizer ignores this thread's memory accesses. GLib hands work to its own
// threads by futexes, which the sanitizer cannot see; every call into it would be reported as a
// race of GLib with itself.
class UnseenLocks {
  public:
    UnseenLocks() {
        if (AnnotateIgnoreReadsBegin != nullptr) {
            AnnotateIgnoreReadsBegin(__FILE__, __LINE__);
            AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
        }
    }

    ~UnseenLocks() {
        if (AnnotateIgnoreReadsEnd != nullptr) {
            AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
            AnnotateIgnoreReadsEnd(__FILE__, __LINE__);
        }
    }

    UnseenLocks(const UnseenLocks&) = delete;
    UnseenLocks& operator=(const UnseenLocks&) = delete;
};

} // namespace doccam::virtualcam

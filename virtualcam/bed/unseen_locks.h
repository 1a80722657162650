// Calls into GLib in a program that the thread sanitizer watches.
#pragma once

extern "C" {
// There only in a program that the thread sanitizer watches.
__attribute__((weak)) void AnnotateIgnoreReadsBegin(const char* file, int line);
__attribute__((weak)) void AnnotateIgnoreReadsEnd(const char* file, int line);
__attribute__((weak)) void AnnotateIgnoreWritesBegin(const char* file, int line);
__attribute__((weak)) void AnnotateIgnoreWritesEnd(const char* file, int line);
}

namespace doccam::virtualcam {

// While it lives, the sanitizer does not look at the memory accesses of this thread. GLib hands
// work to its own threads by futexes, which the sanitizer does not see; every call into it would be
// reported as a race between GLib and itself.
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

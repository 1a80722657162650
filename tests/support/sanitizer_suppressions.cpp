// What the sanitizers report of other people's code, and of the one object kept on purpose.

extern "C" {
__attribute__((visibility("default"))) const char* __lsan_default_options();
__attribute__((visibility("default"))) const char* __lsan_default_suppressions();
__attribute__((visibility("default"))) const char* __tsan_default_options();
__attribute__((visibility("default"))) const char* __tsan_default_suppressions();
}

// What a program says on standard error is its own.
const char* __lsan_default_options() {
    return "print_suppressions=0";
}

// A found camera's device object is never released.
const char* __lsan_default_suppressions() {
    return "leak:libudev.so\n";
}

// Files are read in a forked copy of the process, which may start threads.
const char* __tsan_default_options() {
    return "die_after_fork=0";
}

// OpenCV registers the codecs of the GIS library, which takes two of its own locks in
// both orders while it does so; no thread of ours takes part. The code reader has the system's
// loader load and unload character sets, under a lock of the loader that the sanitizer cannot see.
// Nor can it see the locks of the library that the mocked device tree is built on, or those that
// the virtual camera takes inside of the sanitizer's own poll().
const char* __tsan_default_suppressions() {
    return "deadlock:libgdal.so\nrace:ld-linux-x86-64.so\nrace:libglib-2.0.so\n"
           "race:pollNodes\n";
}

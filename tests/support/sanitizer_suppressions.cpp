// Suppressions for other libraries' code, and for the one object kept on purpose.

extern "C" {
__attribute__((visibility("default"))) const char* __lsan_default_options();
__attribute__((visibility("default"))) const char* __lsan_default_suppressions();
__attribute__((visibility("default"))) const char* __tsan_default_options();
__attribute__((visibility("default"))) const char* __tsan_default_suppressions();
}

// Tests compare standard error, so LeakSanitizer must not print its suppressions there.
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

// OpenCV registers the codecs of GDAL, which takes two of its own locks in both orders; no thread
// of ours takes part. zbar uses iconv, which loads and unloads character sets under a lock of the
// dynamic loader that the sanitizer cannot see. Nor can it see GLib's locks under the mocked device
// tree, or those that the virtual camera takes inside the sanitizer's own poll().
const char* __tsan_default_suppressions() {
    return "deadlock:libgdal.so\nrace:ld-linux-x86-64.so\nrace:libglib-2.0.so\n"
           "race:pollNodes\n";
}

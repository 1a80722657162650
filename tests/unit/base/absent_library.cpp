// A library that a module needs and the loader does not find.
extern "C" [[gnu::visibility("default")]] void doccam_absent() {}

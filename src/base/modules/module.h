// Opening private modules: code kept out of the library, since it needs many other libraries.
#pragma once

#include <atomic>
#include <stdexcept>
#include <string>

namespace doccam {

inline constexpr char kMjpegModule[] = "mjpeg";         // decodes with libav
inline constexpr char kFormatsModule[] = "formats";     // reads and writes with OpenCV's imgcodecs
inline constexpr char kDocumentsModule[] = "documents"; // the hosts' PDFs, with libqpdf

// Begins the table that each module exports as doccam_module; the rest are its functions.
struct ModuleHead {
    const char* name;
    const char* version; // of the library to which it belongs
};

// what() is a sentence for the user: which module is missing, damaged, of another version or lacks
// a library, and what to do about it.
class ModuleError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The folder with the modules of this process's library. The program or library that contains this
// code defines it.
std::string modulesFolder();

// The folder of modules beside the library that contains address; empty if that is unknown. Call it
// while the process starts: the loader may know the library by a name relative to the working
// folder.
std::string modulesBeside(const void* address) noexcept;

// The table of the module of that name, which is never closed. Throws ModuleError. Any thread.
const ModuleHead& openModule(const char* name);

// Whether its file is there and intact; opens nothing. Throws ModuleError.
void checkModule(const char* name);

// Like openModule(), opening the file only once. Threads that do so at the same time get the same
// table.
template <typename Table>
const Table& moduleTable(const char* name) {
    static std::atomic<const Table*> opened{nullptr};
    if (const Table* const table = opened.load(std::memory_order_acquire)) {
        return *table;
    }
    const auto& table = reinterpret_cast<const Table&>(openModule(name));
    opened.store(&table, std::memory_order_release);
    return table;
}

} // namespace doccam

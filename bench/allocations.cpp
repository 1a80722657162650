// This program's malloc and operator new replace those of the C and C++ libraries.
#include "allocations.h"

#include <dlfcn.h>
#include <execinfo.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <new>
#include <sstream>
#include <stdexcept>
#include <utility>

extern "C" {
void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* memory, std::size_t bytes);
void* __libc_memalign(std::size_t alignment, std::size_t bytes);
}

namespace doccam::bench {
namespace {

// One allocation with its call stack, innermost first.
struct Record {
    std::array<void*, 12> callers;
    int depth = 0;
    std::size_t bytes = 0;
};

constexpr std::size_t kRecords = 65536;

std::array<Record, kRecords> records;
std::atomic<std::size_t> recorded{0};
std::atomic<bool> counting{false};
thread_local bool looking = false;

void count(std::size_t bytes) {
    if (!counting.load(std::memory_order_relaxed) || looking) {
        return;
    }
    looking = true;
    const std::size_t number = recorded.fetch_add(1);
    if (number < kRecords) {
        Record& record = records[number];
        record.depth = backtrace(record.callers.data(), static_cast<int>(record.callers.size()));
        record.bytes = bytes;
    }
    looking = false;
}

void* orThrow(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

struct Caller {
    std::string module, place;

    auto operator<=>(const Caller&) const = default;
};

// The exported function at address, or else an offset for addr2line.
Caller nameOf(void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0) {
        return {"?", ""};
    }
    std::ostringstream offset;
    offset << "0x" << std::hex << static_cast<char*>(address) - static_cast<char*>(info.dli_fbase);
    return {std::filesystem::path(info.dli_fname).filename(),
            info.dli_sname == nullptr ? offset.str() : info.dli_sname};
}

bool isInterposer(const Caller& caller) {
    return caller.place == "malloc" || caller.place == "calloc" || caller.place == "realloc" ||
           caller.place == "memalign" || caller.place == "aligned_alloc" ||
           caller.place == "posix_memalign" || caller.place.starts_with("_Zn"); // operator new
}

// The innermost caller outside the C++ library and its templates.
Caller callerOf(const Record& record) {
    constexpr int kCounting = 1; // the frame of count() itself
    for (int i = kCounting; i < record.depth; ++i) {
        Caller caller = nameOf(record.callers[static_cast<std::size_t>(i)]);
        if (!isInterposer(caller) && !caller.module.starts_with("libstdc++")) {
            return caller;
        }
    }
    return {"?", ""};
}

} // namespace

AllocationCount::AllocationCount() {
    // The first call of backtrace() allocates.
    std::array<void*, 1> nearest{};
    backtrace(nearest.data(), 1);
    recorded = 0;
    if (counting.exchange(true)) {
        throw std::logic_error("allocations are being counted already");
    }
}

AllocationCount::~AllocationCount() {
    counting = false;
}

std::vector<Allocation> AllocationCount::take() {
    counting = false;
    std::map<Caller, Allocation> byCaller;
    for (std::size_t i = 0; i < std::min(recorded.load(), kRecords); ++i) {
        const Caller caller = callerOf(records[i]);
        Allocation& sum = byCaller[caller];
        sum.module = caller.module;
        sum.place = caller.place;
        sum.times += 1;
        sum.bytes += records[i].bytes;
    }
    std::vector<Allocation> all;
    for (auto& [caller, allocation] : byCaller) {
        all.push_back(std::move(allocation));
    }
    std::sort(all.begin(), all.end(),
              [](const auto& left, const auto& right) { return left.bytes > right.bytes; });
    return all;
}

bool isAllowed(const Allocation& allocation) {
    constexpr std::size_t kLargestHeader = 256;
    const auto begins = [&](const char* name) { return allocation.module.starts_with(name); };
    const bool header = begins("libopencv_core") &&
                        allocation.place != "_ZN2cv10fastMallocEm" && // of pixels
                        allocation.bytes <= kLargestHeader * allocation.times;
    return begins("libav") || begins("libsw") || begins("libdoccam-virtualcam") || header;
}

} // namespace doccam::bench

using doccam::bench::count, doccam::bench::orThrow;

extern "C" {

void* malloc(std::size_t bytes) {
    count(bytes);
    return __libc_malloc(bytes);
}

void* calloc(std::size_t number, std::size_t bytes) {
    count(number * bytes);
    return __libc_calloc(number, bytes);
}

void* realloc(void* memory, std::size_t bytes) {
    count(bytes);
    return __libc_realloc(memory, bytes);
}

void* memalign(std::size_t alignment, std::size_t bytes) {
    count(bytes);
    return __libc_memalign(alignment, bytes);
}

void* aligned_alloc(std::size_t alignment, std::size_t bytes) {
    count(bytes);
    return __libc_memalign(alignment, bytes);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t bytes) {
    count(bytes);
    void* const made = __libc_memalign(alignment, bytes);
    if (made == nullptr) {
        return ENOMEM;
    }
    *memory = made;
    return 0;
}
}

void* operator new(std::size_t bytes) {
    count(bytes);
    return orThrow(__libc_malloc(bytes));
}

void* operator new[](std::size_t bytes) {
    count(bytes);
    return orThrow(__libc_malloc(bytes));
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t /*bytes*/) noexcept {
    std::free(memory);
}

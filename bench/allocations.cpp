// The program's own malloc and operator new stand before those of the C and C++ libraries.
#include "allocations.h"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <new>
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

// Open addressing by the caller's address: nothing here may allocate.
struct Place {
    std::atomic<void*> caller{nullptr};
    std::atomic<std::size_t> times{0}, bytes{0};
};

constexpr std::size_t kPlaces = 4096;

std::array<Place, kPlaces> places;
std::atomic<bool> counting{false};

void count(void* caller, std::size_t bytes) {
    if (!counting.load(std::memory_order_relaxed)) {
        return;
    }
    const std::size_t first = reinterpret_cast<std::uintptr_t>(caller) * 0x9E3779B97F4A7C15U >> 52;
    for (std::size_t i = 0; i < kPlaces; ++i) {
        Place& place = places[(first + i) % kPlaces];
        void* known = nullptr;
        if (place.caller.compare_exchange_strong(known, caller) || known == caller) {
            place.times.fetch_add(1, std::memory_order_relaxed);
            place.bytes.fetch_add(bytes, std::memory_order_relaxed);
            return;
        }
    }
}

void* orThrow(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

std::pair<std::string, std::string> nameOf(void* caller) {
    Dl_info info{};
    if (dladdr(caller, &info) == 0) {
        return {"?", ""};
    }
    return {std::filesystem::path(info.dli_fname).filename(),
            info.dli_sname == nullptr ? "" : info.dli_sname};
}

} // namespace

AllocationCount::AllocationCount() {
    for (Place& place : places) {
        place.caller = nullptr;
        place.times = 0;
        place.bytes = 0;
    }
    if (counting.exchange(true)) {
        throw std::logic_error("allocations are being counted already");
    }
}

AllocationCount::~AllocationCount() {
    counting = false;
}

std::vector<Allocation> AllocationCount::take() {
    counting = false;
    std::map<std::pair<std::string, std::string>, Allocation> byName;
    for (const Place& place : places) {
        if (void* const caller = place.caller) {
            const auto name = nameOf(caller);
            Allocation& sum = byName[name];
            sum.module = name.first;
            sum.place = name.second;
            sum.times += place.times;
            sum.bytes += place.bytes;
        }
    }
    std::vector<Allocation> all;
    for (auto& [name, allocation] : byName) {
        all.push_back(std::move(allocation));
    }
    std::sort(all.begin(), all.end(),
              [](const auto& left, const auto& right) { return left.bytes > right.bytes; });
    return all;
}

bool isAllowed(const Allocation& allocation) {
    // A header's record, and the list of sizes of an image with more than two dimensions.
    constexpr std::size_t kLargestHeader = 256;
    const auto begins = [&](const char* name) { return allocation.module.starts_with(name); };
    const bool header = begins("libopencv_core") &&
                        allocation.place.find("llocator") != std::string::npos &&
                        allocation.bytes <= kLargestHeader * allocation.times;
    return begins("libav") || begins("libsw") || begins("libdoccam-virtualcam") || header;
}

} // namespace doccam::bench

using doccam::bench::count, doccam::bench::orThrow;

#define CALLER __builtin_extract_return_addr(__builtin_return_address(0))

extern "C" {

void* malloc(std::size_t bytes) {
    count(CALLER, bytes);
    return __libc_malloc(bytes);
}

void* calloc(std::size_t number, std::size_t bytes) {
    count(CALLER, number * bytes);
    return __libc_calloc(number, bytes);
}

void* realloc(void* memory, std::size_t bytes) {
    count(CALLER, bytes);
    return __libc_realloc(memory, bytes);
}

void* memalign(std::size_t alignment, std::size_t bytes) {
    count(CALLER, bytes);
    return __libc_memalign(alignment, bytes);
}

void* aligned_alloc(std::size_t alignment, std::size_t bytes) {
    count(CALLER, bytes);
    return __libc_memalign(alignment, bytes);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t bytes) {
    count(CALLER, bytes);
    void* const made = __libc_memalign(alignment, bytes);
    if (made == nullptr) {
        return ENOMEM;
    }
    *memory = made;
    return 0;
}
}

void* operator new(std::size_t bytes) {
    count(CALLER, bytes);
    return orThrow(__libc_malloc(bytes));
}

void* operator new[](std::size_t bytes) {
    count(CALLER, bytes);
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

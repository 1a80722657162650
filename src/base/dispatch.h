// The same loops compiled for each instruction set, of which the machine's widest is chosen.
#pragma once

#include <vector>

namespace doccam {

// By default GCC uses only half of AVX-512's width; clang does not know the option.
#ifdef __clang__
#define DOCCAM_TARGET_AVX512 gnu::target("avx512f,avx512bw,avx512dq,avx512vl")
#else
#define DOCCAM_TARGET_AVX512                                                                       \
    gnu::target("avx512f,avx512bw,avx512dq,avx512vl,prefer-vector-width=512")
#endif

enum class Widest { kAvx2, kAvx512 };

// An always_inline loop, compiled for wider vectors.
template <auto loop>
struct Compiled;

template <typename... Arguments, void (*loop)(Arguments...)>
struct Compiled<loop> {
#ifdef __x86_64__
    [[gnu::target("avx2")]] static void forAvx2(Arguments... arguments) {
        loop(arguments...);
    }

    [[DOCCAM_TARGET_AVX512]] static void forAvx512(Arguments... arguments) {
        loop(arguments...);
    }
#endif
};

// Kernels{instruction set's name, loops...} of this machine up to widest, narrowest vectors first.
template <typename Kernels, Widest widest, auto... loops>
std::vector<Kernels> supportedKernels() {
    std::vector<Kernels> kernels{{"baseline", loops...}};
#ifdef __x86_64__
    if (__builtin_cpu_supports("avx2")) {
        kernels.push_back({"AVX2", Compiled<loops>::forAvx2...});
    }
    if constexpr (widest == Widest::kAvx512) {
        if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
            __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl")) {
            kernels.push_back({"AVX-512", Compiled<loops>::forAvx512...});
        }
    }
#endif
    return kernels;
}

// The last of what allKernels() returns, the widest that this machine can run.
template <auto allKernels>
const auto& widestKernels() {
    static const auto widest = allKernels().back();
    return widest;
}

} // namespace doccam

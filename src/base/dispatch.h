// Choosing the fastest kernels that this machine can run: the same loops compiled for each
// instruction set.
#pragma once

#include <initializer_list>
#include <vector>

namespace doccam {

enum class InstructionSet { kBaseline, kAvx2, kAvx512 };

// For functions that require AVX-512. By default GCC uses only half of the width; clang does not
// know the option.
#ifdef __clang__
#define DOCCAM_TARGET_AVX512 gnu::target("avx512f,avx512bw,avx512dq,avx512vl")
#else
#define DOCCAM_TARGET_AVX512                                                                       \
    gnu::target("avx512f,avx512bw,avx512dq,avx512vl,prefer-vector-width=512")
#endif

constexpr const char* nameOf(InstructionSet set) {
    switch (set) {
    case InstructionSet::kAvx2:
        return "AVX2";
    case InstructionSet::kAvx512:
        return "AVX-512";
    default:
        return "baseline";
    }
}

// Whether this machine supports set; for AVX-512, the parts for 8-bit and 16-bit integers.
inline bool isSupported(InstructionSet set) {
#ifdef __x86_64__
    switch (set) {
    case InstructionSet::kAvx2:
        return __builtin_cpu_supports("avx2") != 0;
    case InstructionSet::kAvx512:
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
               __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
    default:
        return true;
    }
#else
    return set == InstructionSet::kBaseline;
#endif
}

// The kernels that this machine can run, in their order. Each has a member instructionSet.
template <typename Kernels>
std::vector<Kernels> supportedKernels(std::initializer_list<Kernels> all) {
    std::vector<Kernels> supported;
    for (const Kernels& kernels : all) {
        if (isSupported(kernels.instructionSet)) {
            supported.push_back(kernels);
        }
    }
    return supported;
}

// The last of what allKernels() returns, the widest that this machine can run.
template <auto allKernels>
const auto& widestKernels() {
    static const auto widest = allKernels().back();
    return widest;
}

} // namespace doccam

// Which vector instructions the machine has beyond those that every one of its kind has.
#pragma once

namespace doccam {

#ifdef __x86_64__

// For functions that hasAvx512() is asked for. Left to itself, one compiler keeps to half the
// width, and the other does not know the word for it.
#ifdef __clang__
#define DOCCAM_TARGET_AVX512 gnu::target("avx512f,avx512bw,avx512dq,avx512vl")
#else
#define DOCCAM_TARGET_AVX512                                                                       \
    gnu::target("avx512f,avx512bw,avx512dq,avx512vl,prefer-vector-width=512")
#endif

inline bool hasAvx2() {
    return __builtin_cpu_supports("avx2") != 0;
}

// The parts that whole numbers of 8 and 16 bits need.
inline bool hasAvx512() {
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
           __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
}

#endif

} // namespace doccam

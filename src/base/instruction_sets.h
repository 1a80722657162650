// Which vector instructions the machine has beyond those that every one of its kind has.
#pragma once

namespace doccam {

#ifdef __x86_64__

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

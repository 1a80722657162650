// The checksum in each module's file, by which a damaged file is noticed before its code runs.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace doccam {

inline constexpr std::string_view kSealMark = "doccam module, CRC-32 follows: ";

// Stands once in each module; the build fills in the sum after linking.
struct ModuleSeal {
    char mark[kSealMark.size() + 1];
    std::uint32_t sum;
};

constexpr ModuleSeal unsealed() {
    ModuleSeal seal{};
    kSealMark.copy(seal.mark, kSealMark.size());
    return seal;
}

// Writes the sum into file, the contents of a module as linked. False if it is none.
bool sealModule(std::span<unsigned char> file);

// Whether file is a module as sealed. Stripping it changes nothing that counts. Changes file.
bool isSealedModule(std::span<unsigned char> file);

} // namespace doccam

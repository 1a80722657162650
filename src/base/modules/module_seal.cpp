#include "base/modules/module_seal.h"

#include <link.h>
#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <vector>

namespace doccam {
namespace {

using File = std::span<unsigned char>;

template <typename Part>
std::optional<Part> partAt(File file, std::size_t offset) {
    if (offset > file.size() || file.size() - offset < sizeof(Part)) {
        return std::nullopt;
    }
    Part part;
    std::memcpy(&part, file.data() + offset, sizeof part);
    return part;
}

// The place of the sum; none if file contains no seal.
std::optional<std::size_t> sumOffset(File file) {
    const auto at = std::search(file.begin(), file.end(), kSealMark.begin(), kSealMark.end());
    const auto offset = static_cast<std::size_t>(at - file.begin()) + offsetof(ModuleSeal, sum);
    return partAt<std::uint32_t>(file, offset) ? std::optional(offset) : std::nullopt;
}

// The sum of all that is loaded; none if a part of it is missing.
std::optional<std::uint32_t> sumOfSegments(File file, const ElfW(Ehdr) & header) {
    uLong sum = crc32(0, nullptr, 0);
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        const auto segment = partAt<ElfW(Phdr)>(file, header.e_phoff + i * sizeof(ElfW(Phdr)));
        if (!segment || segment->p_offset > file.size() ||
            segment->p_filesz > file.size() - segment->p_offset) {
            return std::nullopt;
        }
        if (segment->p_type == PT_LOAD) {
            sum = crc32(sum, file.data() + segment->p_offset, static_cast<uInt>(segment->p_filesz));
        }
    }
    return static_cast<std::uint32_t>(sum);
}

// Blanks what does not count: the sum itself, and where the sections are, which stripping changes.
std::optional<std::uint32_t> computedSum(File file, std::size_t kept) {
    auto header = partAt<ElfW(Ehdr)>(file, 0);
    if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 ||
        header->e_phentsize != sizeof(ElfW(Phdr))) {
        return std::nullopt;
    }
    header->e_shoff = 0;
    header->e_shnum = 0;
    header->e_shstrndx = 0;
    std::memcpy(file.data(), &*header, sizeof *header);
    std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(kept), sizeof(std::uint32_t),
                std::uint8_t{0});
    return sumOfSegments(file, *header);
}

} // namespace

bool sealModule(File file) {
    const auto kept = sumOffset(file);
    std::vector<unsigned char> copy(file.begin(), file.end());
    const auto sum = kept ? computedSum(copy, *kept) : std::nullopt;
    if (sum) {
        std::memcpy(file.data() + *kept, &*sum, sizeof *sum);
    }
    return sum.has_value();
}

bool isSealedModule(File file) {
    const auto kept = sumOffset(file);
    const auto sum = kept ? partAt<std::uint32_t>(file, *kept) : std::nullopt;
    return sum && computedSum(file, *kept) == sum;
}

} // namespace doccam

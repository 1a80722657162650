// A document's manifest: what is accepted is written and read again as the same, and can be used.
#include "fuzz_target.h"
#include "pages/spool/manifest.h"

#include <string>

namespace {

using namespace doccam::host;
using doccam::test::require;

void requireUsable(const Recipe& recipe) {
    require(recipe.turn >= 0 && recipe.turn <= 3);
    require(recipe.quality >= 0 && recipe.quality <= 100);
    require(recipe.look == Look::kPhoto || recipe.look == Look::kPaper);
    require(static_cast<std::size_t>(recipe.colour) < kColourNames.size());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto manifest = parseManifest(text);
    if (!manifest) {
        return 0;
    }
    requireUsable(manifest->plan.recipe);
    for (const KeptPage& page : manifest->pages) {
        requireUsable(page.recipe);
        require(page.id >= 1 && page.id <= manifest->last);
        require(page.frame.find('/') == std::string::npos && page.frame.starts_with("frame-"));
    }
    const std::string written = textOf(*manifest);
    const auto again = parseManifest(written);
    require(again && textOf(*again) == written);
    return 0;
}

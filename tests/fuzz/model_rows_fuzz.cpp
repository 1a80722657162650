// The file of supported models as the doctor reads and edits it.
#include "doctor/model_table.h"
#include "fuzz_target.h"

#include <string>

namespace {

using namespace doccam::host;

constexpr std::size_t kMaximumRows = 9;
constexpr const char* kRow = "0c45:6366";

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using doccam::test::require;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const ModelRows rows = parseModelRows(text);
    require(rows.rows.size() <= kMaximumRows);
    require(rows.error.empty() || rows.rows.empty());
    if (!rows.error.empty()) {
        return 0;
    }
    if (const auto longer = withRow(text, kRow)) {
        const ModelRows again = parseModelRows(*longer);
        require(again.rows.size() == rows.rows.size() + 1 && again.rows.back() == kRow);
    }
    const std::size_t fewer = rows.rows.empty() ? 0 : rows.rows.size() - 1;
    require(parseModelRows(withoutLastRow(text)).rows.size() == fewer);
    return 0;
}

// Tables of camera models: the library's parser and the doctor's must agree on each.
#pragma once

#include <string>
#include <vector>

namespace doccam::test {

struct ModelTableCase {
    std::string text;
    std::vector<std::string> rows; // "vvvv:pppp"; empty if a line is malformed
    int errorLine = 0;             // 1-based; 0 if the table is well formed
};

// Rows of different models, one per line.
inline std::string modelRows(int count) {
    std::string text;
    for (int row = 0; row < count; ++row) {
        text += "1d6b:010" + std::to_string(row) + "\n";
    }
    return text;
}

inline std::vector<ModelTableCase> modelTables() {
    std::vector<ModelTableCase> tables{
        {"", {}, 0},
        {"# none\n", {}, 0},
        {"1778:0210", {"1778:0210"}, 0},
        {"# table\n\n 0c45:6366  # first\r\n05a3:9230#second\n\t\n", {"0c45:6366", "05a3:9230"}, 0},
        {modelRows(9) + "# end\n\n",
         {"1d6b:0100", "1d6b:0101", "1d6b:0102", "1d6b:0103", "1d6b:0104", "1d6b:0105", "1d6b:0106",
          "1d6b:0107", "1d6b:0108"},
         0},
        {modelRows(10), {}, 10}};
    for (const char* row :
         {"1778", "1778:", ":0210", "1778:021", "1778:02100", "1778:021G", "1778:02AB", "1778 0210",
          "1778:0210 x", "1778:0210:0", "0x1778:0210", "1778:0210\v", "1778-0210"}) {
        tables.push_back({std::string("1778:0210\n") + row + "\n", {}, 2});
    }
    return tables;
}

// The largest accepted table in bytes.
inline constexpr std::size_t kLargestModelTable = 65536;

} // namespace doccam::test

// The tables of which codes are read, as Markdown.
#pragma once

#include "code_measures.h"

#include <string>
#include <vector>

namespace doccam::test {

class CodesTable {
  public:
    CodesTable(const std::vector<CodeTask>& tasks, const std::vector<CodeMeasure>& measures);

    // Of the drawn series or of the photographed ones: a row for each kind, zbar / ZXing / doccam
    // in its cells, and the number of wrong texts in the last one. Empty without such series.
    std::string text(bool photographed) const;

    // A sentence for each cell in which the library is below the better reader or wrong.
    std::vector<std::string> failures() const;

  private:
    struct Entry {
        const CodeKind* kind;
        const CodeSeries* series;
        CodeCell cell;
    };

    const Entry* find(const CodeKind& kind, const CodeSeries& series) const;
    std::vector<const CodeSeries*> columns(bool photographed) const;
    std::string row(const CodeKind& kind, const std::vector<const CodeSeries*>& columns) const;

    std::vector<Entry> entries_;
};

} // namespace doccam::test

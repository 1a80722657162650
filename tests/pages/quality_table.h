// The table of the page engine's quality, and its bounds.
#pragma once

#include "measures.h"

#include <string>
#include <utility>
#include <vector>

namespace doccam::test {

// A single frame of a category has no mean, so those of few frames are taken of all.
enum class Means { kOfEachCategory, kOfAll };

class QualityTable {
  public:
    void add(const std::string& category, const FrameMeasures& frame);
    // A photograph; its sheet's overlap alone is measured.
    void addPhotograph(const std::string& name, double overlap);

    // A row for each category, in order of appearance, as Markdown.
    std::string text() const;

    // A sentence for each bound that does not hold.
    std::vector<std::string> failures(Means means) const;

  private:
    using Row = std::pair<std::string, std::vector<FrameMeasures>>;

    std::vector<Row> rows_;
    std::vector<std::pair<std::string, double>> photographs_;
};

} // namespace doccam::test

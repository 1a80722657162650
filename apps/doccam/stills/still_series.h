// The files that doccam capture writes, one after the other.
#pragma once

#include "host/output_file.h"
#include "stills/name_pattern.h"

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace doccam::host {

class StillSeries {
  public:
    // A still for each name, count times over. Claims what has a fixed name, and looks whether the
    // others can be written. Throws Failure, also if stills would get the same name.
    StillSeries(const std::vector<std::string>& names, int count, bool force);

    // The file of the next still; null at the end. A number is the first one that is free, or with
    // force the next one.
    std::unique_ptr<OutputFile> next();

    bool atEnd() const { return taken_ == patterns_.size() * rounds_; }

  private:
    std::string freeName(std::size_t index);
    std::unique_ptr<OutputFile> claim(const std::string& name);

    std::vector<NamePattern> patterns_;
    std::map<std::size_t, std::unique_ptr<OutputFile>> fixed_; // by the pattern's index
    std::map<std::size_t, int> numbers_;                       // used last
    std::set<std::string> used_;
    std::size_t rounds_;
    std::size_t taken_ = 0;
    bool force_;
};

} // namespace doccam::host

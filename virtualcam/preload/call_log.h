// The log of calls to virtual nodes.
#pragma once

#include "control.h"

#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace doccam::virtualcam {

class CallLog {
  public:
    void note(const char* request, int node, int descriptor, int result, int error);
    std::vector<Call> calls() const;
    int count(const std::string& request) const;
    void clear();

  private:
    struct Entry {
        const char* request;
        int node;
        int descriptor;
        int result;
        int error;
    };

    mutable std::mutex mutex_;
    std::deque<Entry> entries_;
    std::map<std::string, int> counts_;
};

} // namespace doccam::virtualcam

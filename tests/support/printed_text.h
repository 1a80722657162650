// What the library prints, as a test sees it.
#pragma once

#include <string>

namespace doccam::test {

// Collects everything that any thread writes to standard output (or standard error), from
// construction until take() or destruction.
class PrintedText {
  public:
    enum class Stream { kOutput = 1, kError = 2 };

    explicit PrintedText(Stream stream = Stream::kOutput);
    ~PrintedText();
    PrintedText(const PrintedText&) = delete;
    PrintedText& operator=(const PrintedText&) = delete;

    // What has been written so far.
    std::string soFar();

    // Ends the collection and returns all of it.
    std::string take();

  private:
    void restore();

    int descriptor_;
    int saved_ = -1;
    int file_ = -1;
};

} // namespace doccam::test

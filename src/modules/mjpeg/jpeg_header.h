// Parsing a JPEG's headers without decoding it.
#pragma once

#include <opencv2/core/types.hpp>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace doccam {

// Finds the picture sizes that the frame headers in a JPEG announce.
class AnnouncedSizes {
  public:
    // data must outlive the object.
    explicit AnnouncedSizes(std::span<const unsigned char> data)
      : data_(data) {}

    // The next size in pixels, up to the picture's end; either side may be 0. Damaged data may have
    // several. Once it returns none, it always does.
    std::optional<cv::Size> next();

  private:
    std::size_t nextMarker() const;

    std::span<const unsigned char> data_;
    std::size_t at_ = 0;
    bool found_ = false;
};

// All sizes, in order.
std::vector<cv::Size> announcedSizes(std::span<const unsigned char> data);

} // namespace doccam

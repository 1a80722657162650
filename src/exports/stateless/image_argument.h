// Images that hosts hand over, and exceptions as results of functions without state.
#pragma once

#include <doccam/codes.h>
#include <doccam/page.h>

#include <opencv2/core.hpp>

#include <new>

namespace doccam {

bool isValid(const DoccamImage& image);

// The caller's pixels, not copied.
cv::Mat pixelsOf(const DoccamImage& image);

// These are page.h's and codes.h's alike.
static_assert(DOCCAM_PAGE_NO_MEMORY == DOCCAM_CODES_NO_MEMORY &&
              DOCCAM_PAGE_FAILED == DOCCAM_CODES_FAILED);

// Runs action, whose exceptions become results.
template <typename Action>
int resultOf(const Action& action) noexcept {
    try {
        return action();
    } catch (const std::bad_alloc&) {
        return DOCCAM_PAGE_NO_MEMORY;
    } catch (const cv::Exception& error) {
        return error.code == cv::Error::StsNoMem ? DOCCAM_PAGE_NO_MEMORY : DOCCAM_PAGE_FAILED;
    } catch (...) {
        return DOCCAM_PAGE_FAILED;
    }
}

} // namespace doccam

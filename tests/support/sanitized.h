// Whether this build watches itself, which makes it slow and large.
#pragma once

namespace doccam::test {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

} // namespace doccam::test

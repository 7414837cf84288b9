#pragma once

/// How many times slower this build may be than the one that operators get: limits of time are
/// theirs, and the sanitizers' checks take their share.
#ifdef __SANITIZE_ADDRESS__
inline constexpr int BuildSlowness = 5;
#else
inline constexpr int BuildSlowness = 1;
#endif

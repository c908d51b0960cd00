#pragma once

/// How long a test waits for what must happen. Only a failing test waits so long, so it leaves room
/// for a slow and busy machine.
inline constexpr int TIMEOUT_MS = 60000;

/// By how much the thread sanitizer makes slower what has to be done within a bound.
#ifdef __SANITIZE_THREAD__
inline constexpr int SLOWER = 3;
#else
inline constexpr int SLOWER = 1;
#endif

#pragma once

/// How long a test waits for what must happen. Only a failing test waits so long, so it leaves room
/// for a slow and busy machine.
inline constexpr int TIMEOUT_MS = 60000;

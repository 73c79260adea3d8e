// One thing: starting a thread that nobody waits for.
#pragma once

namespace tavimo::platform {

// Runs entry on a thread of its own, which ends with it. False when no thread is to be had.
[[nodiscard]] bool StartThread(void (*entry)() noexcept) noexcept;

}  // namespace tavimo::platform

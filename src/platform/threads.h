// Starting threads inside a host program.
#pragma once

namespace tavimo::platform {

// Runs entry on a thread of its own, which ends with it. False when no thread is to be had.
[[nodiscard]] bool StartThread(void (*entry)() noexcept) noexcept;

// Runs action, which starts threads by other means: they leave every signal, where a platform has such, to the host's own.
// What action throws passes through.
void WithSignalsBlocked(void (*action)(void* user), void* user);

}  // namespace tavimo::platform

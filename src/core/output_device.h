// The output device: opened in a format, asked for a position, closed under the stop modes hosts pass. The engine queues
// no sound on it.
#pragma once

#include <cstdint>

#include "core/pcm_format.h"
#include "platform/audio.h"

namespace tavimo::core {

// Closes the device that is open, then opens one. False when the platform refuses.
[[nodiscard]] bool OpenOutputDevice(platform::WaveOutput& device, const PcmFormat& format) noexcept;

// Whether a stop mode closes the device; the others leave it as it is.
[[nodiscard]] bool StopModeCloses(std::int32_t mode) noexcept;

void CloseOutputDevice(platform::WaveOutput& device) noexcept;

enum class AskPosition { WhilePlaying, Paused };

// The played bytes within one capture block, 0 to 1255; 0 when no device answers. A device that plays stands still
// while it is asked.
[[nodiscard]] std::int32_t PlayedBytesInBlock(platform::WaveOutput device, AskPosition how) noexcept;

}  // namespace tavimo::core
